#pragma once
// The texts of the menu "More", of what it opens, and of the question before a transfer is broken off, each once.
// Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text::more {

inline constexpr NumberedText button = {20400, u"&More..."};
inline constexpr NumberedText buttonTip = {20401, u"Reset and test the line, files for the machine, history"};
inline constexpr NumberedText openFolder = {20402, u"&Open the NC Folder"};
inline constexpr NumberedText files = {20403, u"&Files for the Machine..."};
inline constexpr NumberedText history = {20404, u"&History..."};
inline constexpr NumberedText copyStatus = {20405, u"&Copy the Status"};
// %1 is the folder.
inline constexpr NumberedText folderNotOpened = {20406, u"The system has no program that shows %1."};
inline constexpr NumberedText about = {20407, u"&About TarvinDL..."};
inline constexpr NumberedText aboutCaption = {20408, u"About TarvinDL"};
// %1 is the version, %2 the system, %3 the installation and %4 the machine.
inline constexpr NumberedText aboutText = {20409, u"TarvinDL %1\n%2\n\nMachine: %4\nInstallation: %3"};
inline constexpr NumberedText licences = {20425, u"&Licences..."};
inline constexpr NumberedText licencesCaption = {20426, u"Licences of the Parts of Others"};

inline constexpr NumberedText filesCaption = {20410, u"Files for the Machine"};
inline constexpr NumberedText filesIn = {20411, u"The machine may ask for these files of %1"};
inline constexpr NumberedText filter = {20412, u"&Number or comment holds"};
inline constexpr NumberedText number = {20413, u"Number"};
inline constexpr NumberedText comment = {20414, u"First comment"};
inline constexpr NumberedText size = {20415, u"Bytes"};
inline constexpr NumberedText changed = {20416, u"Changed"};
inline constexpr NumberedText note = {20417, u"Note"};
inline constexpr NumberedText incomplete = {20418, u"incomplete"};
inline constexpr NumberedText readAgain = {20419, u"&Read Again"};
inline constexpr NumberedText reading = {20420, u"The folder is being read..."};
inline constexpr NumberedText fileCount = {20421, u"Files: %1"};

// Before a transfer is broken off. %1 is the file's number, %2 the percentage or the bytes.
inline constexpr NumberedText breakCaption = {20422, u"A File Is on Its Way"};
inline constexpr NumberedText breakSent = {20423, u"%1 is being sent to the machine, %2 %. Break it off?"};
inline constexpr NumberedText breakReceived = {20424,
                                               u"%1 is being received from the machine, %2 bytes. Break it off?"};

}
