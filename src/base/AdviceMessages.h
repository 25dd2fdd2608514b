#pragma once
// What message boxes say around their text: a first line in plain words, and what to do. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

namespace headline {
inline constexpr char16_t portNotOpened[] = u"The serial port cannot be opened.";
inline constexpr char16_t linkLost[] = u"The connection to the serial port is lost.";
inline constexpr char16_t settingsRefused[] = u"The serial port does not work with these settings.";
inline constexpr char16_t portUnusual[] = u"The serial port works, but refuses a part of its set-up.";
inline constexpr char16_t portNotClosed[] = u"The serial port could not be closed in order.";
inline constexpr char16_t badSettings[] = u"The settings of this machine are damaged.";
inline constexpr char16_t settingsNotRead[] = u"The settings of this machine cannot be read.";
inline constexpr char16_t settingsNotSaved[] = u"Your settings are not saved.";
inline constexpr char16_t logNotWritten[] = u"A log cannot be written. Transfers go on.";
inline constexpr char16_t historyNotWritten[] = u"Transfers are not written to the history.";
inline constexpr char16_t notAscii[] = u"The file was refused: it is no NC program.";
inline constexpr char16_t dictionaryNotRead[] = u"The program shows its texts in English.";
inline constexpr char16_t noHelpBook[] = u"There is no help to show.";
inline constexpr char16_t fileNotCopied[] = u"The file is not ready for the machine.";
inline constexpr char16_t corruptInstallation[] = u"The program cannot start.";
inline constexpr char16_t trafficNotSaved[] = u"The traffic is not saved.";
}

namespace advice {
inline constexpr char16_t portNotOpened[] =
    u"Plug in the adapter, close another program that uses the port, or choose another port in Change Settings. The "
    u"program tries again each second.";
inline constexpr char16_t linkLost[] =
    u"Check the plug and the USB cable. The connection comes back by itself; then begin the transfer again.";
inline constexpr char16_t settingsRefused[] = u"Choose other values in Change Settings: a usual speed, 8 data bits, 1 "
                                              u"stop bit. Nothing is sent or received until "
                                              u"then.";
inline constexpr char16_t portUnusual[] =
    u"If transfers work, there is nothing to do. If this comes each time, renew the driver of the adapter.";
inline constexpr char16_t portNotClosed[] =
    u"If transfers work, there is nothing to do. Otherwise unplug the adapter and plug it in again.";
inline constexpr char16_t badSettings[] =
    u"Open Change Settings, go through all fields and confirm them. The old file is kept with the ending .bad.";
inline constexpr char16_t settingsNotRead[] =
    u"Close the program, make the file readable, and start again. Changes that you make now are not saved.";
inline constexpr char16_t settingsNotSaved[] =
    u"Make room on the disk, or get the right to write into the folder. Then enter the changes again.";
inline constexpr char16_t logNotWritten[] =
    u"Make room on the disk, or choose a folder in which you may write. The program tries again each minute.";
inline constexpr char16_t historyNotWritten[] = u"Transfers go on, and their rows wait in memory. See whether the disk "
                                                u"is full, and whether the file can be written.";
inline constexpr char16_t notAscii[] =
    u"Write the file anew with the programming system. Nothing of it was sent to the machine.";
inline constexpr char16_t dictionaryNotRead[] =
    u"Copy diction.ary from another workstation into the installation folder.";
inline constexpr char16_t noHelpBook[] =
    u"Copy comshelp.htb into the installation folder, or install the program again.";
inline constexpr char16_t fileNotCopied[] =
    u"Make room on the disk, or get the right to write into the folder. An older file of this number is as it was.";
inline constexpr char16_t corruptInstallation[] =
    u"Put KEL.INI back from a backup, or install the program again. Settings stay as they are.";
inline constexpr char16_t trafficNotSaved[] = u"Save it again, in a folder in which you may write.";
}

// The window of a box.
namespace messageWindow {
// %1 is a time.
inline constexpr char16_t shownAt[] = u"At %1.";
inline constexpr char16_t copy[] = u"Co&py";
inline constexpr char16_t copyTip[] = u"Copy the whole message (Ctrl+C)";
inline constexpr char16_t textName[] = u"Text of the message";
inline constexpr char16_t cutOff[] = u"... the rest is left out here. Copy gives the whole text.";
}

}
