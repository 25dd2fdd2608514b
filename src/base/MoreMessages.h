#pragma once
// The texts of the menu "More", of what it opens, and of the question before a transfer is broken off, each once.
// Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text::more {

inline constexpr char16_t button[] = u"&More...";
inline constexpr char16_t buttonTip[] = u"Reset and test the line, files for the machine, history";
inline constexpr char16_t openFolder[] = u"&Open the NC Folder";
inline constexpr char16_t files[] = u"&Files for the Machine...";
inline constexpr char16_t history[] = u"&History...";
inline constexpr char16_t copyStatus[] = u"&Copy the Status";
// %1 is the folder.
inline constexpr char16_t folderNotOpened[] = u"The system has no program that shows %1.";
inline constexpr char16_t about[] = u"&About TarvinDL...";
inline constexpr char16_t aboutCaption[] = u"About TarvinDL";
// %1 is the version, %2 the system, %3 the installation and %4 the machine.
inline constexpr char16_t aboutText[] = u"TarvinDL %1\n%2\n\nMachine: %4\nInstallation: %3";

inline constexpr char16_t filesCaption[] = u"Files for the Machine";
inline constexpr char16_t filesIn[] = u"The machine may ask for these files of %1";
inline constexpr char16_t filter[] = u"&Number or comment holds";
inline constexpr char16_t number[] = u"Number";
inline constexpr char16_t comment[] = u"First comment";
inline constexpr char16_t size[] = u"Bytes";
inline constexpr char16_t changed[] = u"Changed";
inline constexpr char16_t note[] = u"Note";
inline constexpr char16_t incomplete[] = u"incomplete";
inline constexpr char16_t readAgain[] = u"&Read Again";
inline constexpr char16_t reading[] = u"The folder is being read...";
inline constexpr char16_t fileCount[] = u"Files: %1";

// Before a transfer is broken off. %1 is the file's number, %2 the percentage or the bytes.
inline constexpr char16_t breakCaption[] = u"A File Is on Its Way";
inline constexpr char16_t breakSent[] = u"%1 is being sent to the machine, %2 %. Break it off?";
inline constexpr char16_t breakReceived[] = u"%1 is being received from the machine, %2 bytes. Break it off?";

}
