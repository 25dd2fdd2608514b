#pragma once
// The texts of the window's controls, menus and dialogs, each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// The main window: captions of its controls.
namespace label {
inline constexpr NumberedText status = {20000, u"Status"};
inline constexpr NumberedText received = {20001, u"Rx"};
inline constexpr NumberedText transmitted = {20002, u"Tx"};
inline constexpr NumberedText log = {20003, u"&Log"};
inline constexpr NumberedText view = {20004, u"&View"};
inline constexpr NumberedText help = {20005, u"&Help"};
inline constexpr NumberedText changeSettings = {20006, u"Change S&ettings"};
inline constexpr NumberedText sendFile = {20007, u"&Send File"};
inline constexpr NumberedText test = {20008, u"&Test"};
inline constexpr NumberedText receiveFile = {20009, u"&Receive File"};
inline constexpr NumberedText close = {20010, u"&Close"};
// Stands above the two check boxes, whose names follow.
inline constexpr NumberedText heed = {20087, u"Heed"};
inline constexpr NumberedText ctsHandshake = {20011, u"Heed CTS"};
inline constexpr NumberedText dsrHandshake = {20012, u"Heed DSR"};
inline constexpr NumberedText ctsHold = {20013, u"CTS H&old"};
inline constexpr NumberedText dsrHold = {20014, u"&DSR Hold"};
inline constexpr NumberedText rlsHold = {20015, u"RLS Hold"};
inline constexpr NumberedText xoffHold = {20016, u"XOff Hold"};
inline constexpr NumberedText xoffSent = {20017, u"XOff Sent"};
// Names that screen readers say.
inline constexpr NumberedText progress = {20088, u"Progress"};
inline constexpr NumberedText traffic = {20089, u"Traffic"};
inline constexpr NumberedText picture = {20090, u"Picture of the connection"};
inline constexpr NumberedText settingsPages = {20091, u"Pages of the settings"};
}

// What the signs of the status line, of boxes and of fields say, for screen readers.
namespace outlook {
inline constexpr NumberedText idle = {20092, u"Idle"};
inline constexpr NumberedText busy = {20093, u"Busy"};
inline constexpr NumberedText good = {20094, u"Well"};
inline constexpr NumberedText bad = {20095, u"Problem"};
inline constexpr NumberedText note = {20096, u"Note"};
inline constexpr NumberedText warning = {20097, u"Warning"};
inline constexpr NumberedText question = {20098, u"Question"};
}

// The main window: tips.
namespace tip {
inline constexpr NumberedText received = {20018, u"Lit while characters arrive"};
inline constexpr NumberedText transmitted = {20019, u"Lit while characters are sent"};
inline constexpr NumberedText log = {20020, u"Write all that crosses the line to a log file"};
inline constexpr NumberedText view = {20021, u"Show the traffic on the line in place of the board"};
inline constexpr NumberedText help = {20022, u"Open the help book (F1 opens it at the page that fits)"};
inline constexpr NumberedText changeSettings = {20023, u"Port, folders, log and control characters"};
inline constexpr NumberedText incomingCheck = {20024, u"What a message that arrives damaged does to an upload"};
inline constexpr NumberedText sendFile = {20025, u"Send an NC file to the controller"};
inline constexpr NumberedText test = {20026, u"Send a message to a plug that joins transmit and receive"};
inline constexpr NumberedText receiveFile = {20027, u"Receive an NC file from the controller"};
inline constexpr NumberedText close = {20028, u"Close the program"};
inline constexpr NumberedText ctsHandshake = {20029, u"Heed CTS and steer RTS, with hardware flow control (Alt+O)"};
inline constexpr NumberedText dsrHandshake = {20030, u"Heed DSR and steer DTR, with hardware flow control (Alt+D)"};
inline constexpr NumberedText ctsHold = {20031, u"Red while sending waits for the controller's CTS"};
inline constexpr NumberedText dsrHold = {20032, u"Red while sending waits for the controller's DSR"};
inline constexpr NumberedText rlsHold = {20033, u"Red while sending waits for the carrier signal"};
inline constexpr NumberedText xoffHold = {20034, u"Red while the controller has stopped the line with XOFF"};
inline constexpr NumberedText xoffSent = {20035, u"Red while the line is stopped because XOFF was sent"};
// %1 is the caption of the lamp and %2 its tip.
inline constexpr NumberedText lampOn = {20036, u"%1: on. %2"};
inline constexpr NumberedText lampOff = {20037, u"%1: off. %2"};
inline constexpr NumberedText progress = {20038, u"%1 % of the file is done"};
inline constexpr char16_t version[] = u"TarvinDL %1\n%2";
}

// The menu of the main window. A key stands behind the tab.
namespace menu {
inline constexpr NumberedText copy = {20039, u"&Copy\tCtrl+C"};
inline constexpr NumberedText selectAll = {20040, u"Select &All\tCtrl+A"};
inline constexpr NumberedText clear = {20041, u"C&lear"};
inline constexpr NumberedText followEnd = {20042, u"&Follow the End\tEnd"};
inline constexpr NumberedText resetLink = {20043, u"&Reset Link"};
inline constexpr NumberedText xoffTest = {20044, u"&XOFF/XON Test"};
}

// Dialogs: their groups, labels, buttons, tips and file filters.
namespace dialog {
inline constexpr NumberedText seenAgain = {20045, u"Seen %1 times, last at %2."};
inline constexpr NumberedText ok = {20046, u"OK"};
inline constexpr NumberedText cancel = {20047, u"Cancel"};
inline constexpr NumberedText help = {20048, u"&Help"};
inline constexpr char16_t browse[] = u"...";
inline constexpr NumberedText cancelDownload = {20049, u"&Cancel"};
inline constexpr NumberedText cancelUpload = {20050, u"C&ancel"};
inline constexpr NumberedText completeUpload = {20051, u"&Complete"};
inline constexpr NumberedText lineGroup = {20052, u"Settings"};
inline constexpr NumberedText port = {20053, u"&Port"};
inline constexpr NumberedText baudRate = {20054, u"&Baud Rate"};
inline constexpr NumberedText parity = {20055, u"P&arity"};
inline constexpr NumberedText dataBits = {20056, u"&Data Bits"};
inline constexpr NumberedText stopBits = {20057, u"&Stop Bits"};
inline constexpr NumberedText flowControl = {20058, u"&Flow Control"};
inline constexpr NumberedText characterGroup = {20059, u"Control Characters"};
inline constexpr NumberedText sendStartCode = {20060, u"Send Code to Start Trans&mission"};
inline constexpr NumberedText startCharacter = {20061, u"Character sent at the start of a transmission"};
inline constexpr NumberedText sendEndCode = {20062, u"Send Code to End Transm&ission"};
inline constexpr NumberedText endCharacter = {20063, u"Character sent at the end of a transmission"};
inline constexpr NumberedText filesGroup = {20064, u"Files"};
inline constexpr NumberedText uploadPath = {20065, u"&Upload Path"};
inline constexpr NumberedText browseUploadPath = {20066, u"Browse for the upload folder"};
inline constexpr NumberedText downloadPath = {20067, u"Do&wnload Path"};
inline constexpr NumberedText browseDownloadPath = {20068, u"Browse for the download folder"};
inline constexpr NumberedText fileExtension = {20069, u"File &Extension"};
inline constexpr NumberedText logGroup = {20070, u"Activity Log"};
inline constexpr NumberedText logFile = {20071, u"&Log File"};
inline constexpr NumberedText browseLogFile = {20072, u"Browse for the log file"};
inline constexpr NumberedText writeLog = {20073, u"W&rite Log File"};
inline constexpr NumberedText delayGroup = {20074, u"Delays"};
inline constexpr NumberedText characterDelay = {20075, u"Character Dela&y (milliseconds)"};
inline constexpr NumberedText lineDelay = {20076, u"Li&ne Delay (milliseconds)"};
inline constexpr NumberedText transmitDelay = {20077, u"&Transmit Delay (Seconds)"};
// %1 is the file.
inline constexpr NumberedText fileNumber = {20078, u"Under which number will the machine ask for %1?"};
inline constexpr NumberedText fileNumberName = {20079, u"File number"};
inline constexpr NumberedText checkGroup = {20080, u"Uploads"};
inline constexpr NumberedText incomingCheck = {20081, u"Check Incomin&g Messages"};
inline constexpr NumberedText replacedFilesKept = {20082, u"Replaced Files &Kept for Each Number"};
inline constexpr NumberedText allFiles = {20083, u"All Files (*.*)"};
inline constexpr NumberedText ncFiles = {20084, u"NC files"};
inline constexpr NumberedText logFiles = {20085, u"Log files"};
inline constexpr char16_t filesWithExtension[] = u"%1 (*.%2)";
// %1 and %2 are the patterns of the system. The first name has no closing parenthesis, as users know it.
inline constexpr NumberedText activityLogFilters = {20086, u"Text files (*.txt|%1|All Files (*.*)|%2"};
}

}
