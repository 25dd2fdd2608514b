#pragma once
// The settings that concern the port. Any thread.

#include "settings/DownloadSettings.h"

namespace tarvin {

// Whether the flow control uses the handshake signals, so that the settings ctsFlow and dsrFlow have an effect.
bool HeedsHandshakes(KelTextView flowControl);

// Whether the port has to be opened anew, which ends a transfer, when the settings `before` are replaced by `after`.
// True for a new port, line mode, flow control or kind of controller, and for another handshake switch that has an
// effect.
bool ReopensPort(const DownloadSettings& before, const DownloadSettings& after);

}
