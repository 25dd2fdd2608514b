#pragma once
// The texts of the window that a first start shows, each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

namespace startWindow {
inline constexpr NumberedText caption = {22010, u"Set Up TarvinDL"};
inline constexpr NumberedText heading = {22011, u"What is needed for the first machine?"};
inline constexpr NumberedText machine = {22012, u"Name of the &machine"};
inline constexpr NumberedText port = {22013, u"&Port"};
inline constexpr NumberedText speed = {22014, u"&Speed (baud)"};
inline constexpr NumberedText upload = {22015, u"Files &from the machine"};
inline constexpr NumberedText download = {22016, u"Files &to the machine"};
inline constexpr NumberedText language = {22017, u"&Language"};
inline constexpr NumberedText browseUpload = {22018, u"&Browse..."};
inline constexpr NumberedText browseDownload = {22019, u"B&rowse..."};
inline constexpr NumberedText lookAgain = {22020, u"Look &Again"};
inline constexpr NumberedText create = {22021, u"&Create"};
// %1 is the folder of the installation.
inline constexpr NumberedText place = {22022, u"Everything that the program keeps goes to %1."};
// What may be wrong with the first start, in a list.
inline constexpr NumberedText missing = {22023, u"What is missing"};
inline constexpr NumberedText nothingMissing = {22024, u"Nothing is missing."};
inline constexpr NumberedText nameNeeded = {22025, u"A name is needed here."};
inline constexpr NumberedText whichMachine = {22026, u"Which machine?"};
// %1 is the program and %2 the reason.
inline constexpr NumberedText cannotStart = {22028, u"%1 cannot be started: %2"};
}

}
