#pragma once
// The texts of the settings dialog, and of a drop on the main window, that stand in no other dialog, each once. Written
// as in Messages.h.

#include "base/WindowMessages.h"

namespace tarvin::text {

// The pages of the settings dialog, and the groups and labels on them.
namespace settingsPage {
inline constexpr NumberedText line = {21000, u"Line"};
inline constexpr NumberedText files = {21001, u"Files and Log"};
inline constexpr NumberedText calls = {21002, u"Uploads and Calls"};
inline constexpr NumberedText controller = {21003, u"&Controller"};
inline constexpr NumberedText silence = {21004, u"End a Recei&ve after Silence (seconds, 0: never)"};
inline constexpr NumberedText callsGroup = {21005, u"Calls"};
inline constexpr NumberedText attention = {21006, u"Call after a Hold &or Silence (minutes, 0: never)"};
inline constexpr NumberedText sound = {21007, u"Call with a Sound (&x)"};
inline constexpr NumberedText historyGroup = {21008, u"History and Messages"};
inline constexpr NumberedText historyYears = {21009, u"Keep History (years, 0: for ever)"};
inline constexpr NumberedText showAllMessages = {21010, u"Show All Messages Again"};
inline constexpr NumberedText language = {21024, u"Language"};
inline constexpr NumberedText systemLanguage = {21025, u"As the system"};
}

// The entries of its lists whose values the settings keep as numbers.
namespace choice {
inline constexpr NumberedText checkOff = {21026, u"Off"};
inline constexpr NumberedText checkEnds = {21027, u"End the upload"};
inline constexpr NumberedText checkWaits = {21028, u"Wait for the repeat"};
inline constexpr NumberedText byNumber = {21029, u"Asks for files by number"};
inline constexpr NumberedText byHand = {21030, u"Any (files sent and received by hand)"};
}

namespace settingsTip {
inline constexpr NumberedText controller = {21011, u"How the machine exchanges files"};
inline constexpr NumberedText silence = {21012,
                                         u"A receive ends by itself when the machine has sent nothing for this long"};
inline constexpr NumberedText attention = {
    21013, u"Calls you when a file on its way is held, or the machine is silent, for this long"};
inline constexpr NumberedText historyYears = {21014, u"How long the list of past transfers of this machine is kept"};
inline constexpr NumberedText showAllMessages = {
    21015, u"Shows the messages again for which you chose not to see them any more"};
inline constexpr NumberedText language = {21031, u"The language of this window. Takes effect at the next start"};
}

// Notes on the pages.
namespace settingsNote {
inline constexpr NumberedText nextStart = {21032, u"Takes effect at the next start."};
inline constexpr NumberedText noEffect = {21016, u"Has no effect with this controller."};
inline constexpr NumberedText saved = {21017, u"The settings are saved to the disk when the program closes."};
inline constexpr NumberedText browsed = {
    21018, u"A folder or a file that you pick with a button counts at once, even after Cancel."};
inline constexpr NumberedText allMessagesShown = {21019, u"All messages show again."};
inline constexpr NumberedText messagesShownForNow = {21020, u"All messages show again until the program closes."};
}

// Why a drop on the main window is refused. %1 is the path.
namespace drop {
inline constexpr NumberedText severalFiles = {21021, u"One file can be sent at a time. Drop one file."};
inline constexpr NumberedText isFolder = {21022, u"%1 is a folder. Drop the file itself."};
}

// What the settings dialog says about a number. %1 is the lowest and %2 the highest one.
namespace setting {
inline constexpr NumberedText badRange = {21023, u"%1 to %2 only."};
}

}
