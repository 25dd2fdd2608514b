#pragma once
// The texts of the settings dialog, and of a drop on the main window, that stand in no other dialog, each once. Written
// as in Messages.h.

#include "base/WindowMessages.h"

namespace tarvin::text {

// The pages of the settings dialog, and the groups and labels on them.
namespace settingsPage {
inline constexpr char16_t line[] = u"Line";
inline constexpr char16_t files[] = u"Files and Log";
inline constexpr char16_t calls[] = u"Uploads and Calls";
inline constexpr char16_t controller[] = u"&Controller";
inline constexpr char16_t silence[] = u"End a Recei&ve after Silence (seconds, 0: never)";
inline constexpr char16_t callsGroup[] = u"Calls";
inline constexpr char16_t attention[] = u"Call after a Hold &or Silence (minutes, 0: never)";
inline constexpr char16_t sound[] = u"Call with a Sound (&x)";
inline constexpr char16_t historyGroup[] = u"History and Messages";
inline constexpr char16_t historyYears[] = u"Keep History (years, 0: for ever)";
inline constexpr char16_t showAllMessages[] = u"Show All Messages Again";
}

namespace settingsTip {
inline constexpr char16_t controller[] = u"How the machine exchanges files";
inline constexpr char16_t silence[] = u"A receive ends by itself when the machine has sent nothing for this long";
inline constexpr char16_t attention[] =
    u"Calls you when a file on its way is held, or the machine is silent, for this long";
inline constexpr char16_t historyYears[] = u"How long the list of past transfers of this machine is kept";
inline constexpr char16_t showAllMessages[] = u"Shows the messages again for which you chose not to see them any more";
}

// Notes on the pages.
namespace settingsNote {
inline constexpr char16_t noEffect[] = u"Has no effect with this controller.";
inline constexpr char16_t saved[] = u"The settings are saved to the disk when the program closes.";
inline constexpr char16_t browsed[] =
    u"A folder or a file that you pick with a button counts at once, even after Cancel.";
inline constexpr char16_t allMessagesShown[] = u"All messages show again.";
inline constexpr char16_t messagesShownForNow[] = u"All messages show again until the program closes.";
}

// Why a drop on the main window is refused. %1 is the path.
namespace drop {
inline constexpr char16_t severalFiles[] = u"One file can be sent at a time. Drop one file.";
inline constexpr char16_t isFolder[] = u"%1 is a folder. Drop the file itself.";
}

// What the settings dialog says about a number. %1 is the lowest and %2 the highest one.
namespace setting {
inline constexpr char16_t badRange[] = u"%1 to %2 only.";
}

}
