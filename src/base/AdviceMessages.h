#pragma once
// What message boxes say around their text: a first line in plain words, and what to do. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

namespace headline {
inline constexpr NumberedText portNotOpened = {20600, u"The serial port cannot be opened."};
inline constexpr NumberedText linkLost = {20601, u"The connection to the serial port is lost."};
inline constexpr NumberedText settingsRefused = {20602, u"The serial port does not work with these settings."};
inline constexpr NumberedText portUnusual = {20603, u"The serial port works, but refuses a part of its set-up."};
inline constexpr NumberedText portNotClosed = {20604, u"The serial port could not be closed in order."};
inline constexpr NumberedText badSettings = {20605, u"The settings of this machine are damaged."};
inline constexpr NumberedText settingsNotRead = {20606, u"The settings of this machine cannot be read."};
inline constexpr NumberedText settingsNotSaved = {20607, u"Your settings are not saved."};
inline constexpr NumberedText logNotWritten = {20608, u"A log cannot be written. Transfers go on."};
inline constexpr NumberedText historyNotWritten = {20635, u"Transfers are not written to the history."};
inline constexpr NumberedText notAscii = {20609, u"The file was refused: it is no NC program."};
inline constexpr NumberedText dictionaryNotRead = {20610, u"The program shows its texts in English."};
inline constexpr NumberedText noHelpBook = {20611, u"There is no help to show."};
inline constexpr NumberedText fileNotCopied = {20612, u"The file is not ready for the machine."};
inline constexpr NumberedText corruptInstallation = {20613, u"The program cannot start."};
inline constexpr NumberedText trafficNotSaved = {20614, u"The traffic is not saved."};
}

namespace advice {
inline constexpr NumberedText portNotOpened = {
    20615,
    u"Plug in the adapter, close another program that uses the port, or choose another port in Change Settings. The "
    u"program tries again each second."};
inline constexpr NumberedText linkLost = {
    20616, u"Check the plug and the USB cable. The connection comes back by itself; then begin the transfer again."};
inline constexpr NumberedText settingsRefused = {
    20617, u"Choose other values in Change Settings: a usual speed, 8 data bits, 1 "
           u"stop bit. Nothing is sent or received until "
           u"then."};
inline constexpr NumberedText portUnusual = {
    20618, u"If transfers work, there is nothing to do. If this comes each time, renew the driver of the adapter."};
inline constexpr NumberedText portNotClosed = {
    20619, u"If transfers work, there is nothing to do. Otherwise unplug the adapter and plug it in again."};
inline constexpr NumberedText badSettings = {
    20620, u"Open Change Settings, go through all fields and confirm them. The old file is kept with the ending .bad."};
inline constexpr NumberedText settingsNotRead = {
    20621, u"Close the program, make the file readable, and start again. Changes that you make now are not saved."};
inline constexpr NumberedText settingsNotSaved = {
    20622, u"Make room on the disk, or get the right to write into the folder. Then enter the changes again."};
inline constexpr NumberedText logNotWritten = {
    20623, u"Make room on the disk, or choose a folder in which you may write. The program tries again each minute."};
inline constexpr NumberedText historyNotWritten = {20636,
                                                   u"Transfers go on, and their rows wait in memory. See whether the "
                                                   u"disk is full, and whether the file can be written."};
inline constexpr NumberedText notAscii = {
    20624, u"Write the file anew with the programming system. Nothing of it was sent to the machine."};
inline constexpr NumberedText dictionaryNotRead = {
    20625, u"Copy diction.ary from another workstation into the installation folder."};
inline constexpr NumberedText noHelpBook = {
    20626, u"Copy comshelp.htb into the installation folder, or install the program again."};
inline constexpr NumberedText fileNotCopied = {
    20627,
    u"Make room on the disk, or get the right to write into the folder. An older file of this number is as it was."};
inline constexpr NumberedText corruptInstallation = {
    20628, u"Put KEL.INI back from a backup, or install the program again. Settings stay as they are."};
inline constexpr NumberedText trafficNotSaved = {20629, u"Save it again, in a folder in which you may write."};
}

// The window of a box.
namespace messageWindow {
// %1 is a time.
inline constexpr NumberedText shownAt = {20630, u"At %1."};
inline constexpr NumberedText copy = {20631, u"Co&py"};
inline constexpr NumberedText copyTip = {20632, u"Copy the whole message (Ctrl+C)"};
inline constexpr NumberedText textName = {20633, u"Text of the message"};
inline constexpr NumberedText cutOff = {20634, u"... the rest is left out here. Copy gives the whole text."};
}

}
