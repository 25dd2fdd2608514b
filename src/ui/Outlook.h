#pragma once
// Is it going well: what the state of link and transfer means to somebody who looks from across the room. Pure.

#include "engine/DownloadWindow.h"

namespace tarvin {

enum class Outlook { Idle, Busy, Good, Bad };

Outlook OutlookOf(const EngineSnapshot& snapshot);

}
