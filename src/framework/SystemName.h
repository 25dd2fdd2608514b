#pragma once
// The operating system and its version, in a few words. Any thread.

#include "framework/KelText.h"

namespace tarvin {

KelText SystemName();

}
