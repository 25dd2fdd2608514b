#pragma once
// The texts of the window's controls, menus and dialogs, each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// The main window: captions of its controls.
namespace label {
inline constexpr char16_t status[] = u"Status";
inline constexpr char16_t received[] = u"Rx";
inline constexpr char16_t transmitted[] = u"Tx";
inline constexpr char16_t log[] = u"&Log";
inline constexpr char16_t view[] = u"&View";
inline constexpr char16_t help[] = u"&Help";
inline constexpr char16_t changeSettings[] = u"Change S&ettings";
inline constexpr char16_t sendFile[] = u"&Send File";
inline constexpr char16_t test[] = u"&Test";
inline constexpr char16_t receiveFile[] = u"&Receive File";
inline constexpr char16_t close[] = u"&Close";
// Stands above the two check boxes, whose names follow.
inline constexpr char16_t heed[] = u"Heed";
inline constexpr char16_t ctsHandshake[] = u"Heed CTS";
inline constexpr char16_t dsrHandshake[] = u"Heed DSR";
inline constexpr char16_t ctsHold[] = u"CTS H&old";
inline constexpr char16_t dsrHold[] = u"&DSR Hold";
inline constexpr char16_t rlsHold[] = u"RLS Hold";
inline constexpr char16_t xoffHold[] = u"XOff Hold";
inline constexpr char16_t xoffSent[] = u"XOff Sent";
// Names that screen readers say.
inline constexpr char16_t progress[] = u"Progress";
inline constexpr char16_t traffic[] = u"Traffic";
inline constexpr char16_t picture[] = u"Picture of the connection";
inline constexpr char16_t settingsPages[] = u"Pages of the settings";
}

// What the signs of the status line, of boxes and of fields say, for screen readers.
namespace outlook {
inline constexpr char16_t idle[] = u"Idle";
inline constexpr char16_t busy[] = u"Busy";
inline constexpr char16_t good[] = u"Well";
inline constexpr char16_t bad[] = u"Problem";
inline constexpr char16_t note[] = u"Note";
inline constexpr char16_t warning[] = u"Warning";
inline constexpr char16_t question[] = u"Question";
}

// The main window: tips.
namespace tip {
inline constexpr char16_t received[] = u"Lit while characters arrive";
inline constexpr char16_t transmitted[] = u"Lit while characters are sent";
inline constexpr char16_t log[] = u"Write all that crosses the line to a log file";
inline constexpr char16_t view[] = u"Show the traffic on the line in place of the picture";
inline constexpr char16_t help[] = u"Open the help book (F1 opens it at the page that fits)";
inline constexpr char16_t changeSettings[] = u"Port, folders, log and control characters";
inline constexpr char16_t incomingCheck[] = u"What a message that arrives damaged does to an upload";
inline constexpr char16_t sendFile[] = u"Send an NC file to the controller";
inline constexpr char16_t test[] = u"Send a message to a plug that joins transmit and receive";
inline constexpr char16_t receiveFile[] = u"Receive an NC file from the controller";
inline constexpr char16_t close[] = u"Close the program";
// Stands above the two check boxes, whose names follow.
inline constexpr char16_t heed[] = u"Heed";
inline constexpr char16_t ctsHandshake[] = u"Heed CTS and steer RTS, with hardware flow control (Alt+O)";
inline constexpr char16_t dsrHandshake[] = u"Heed DSR and steer DTR, with hardware flow control (Alt+D)";
inline constexpr char16_t ctsHold[] = u"Red while sending waits for the controller's CTS";
inline constexpr char16_t dsrHold[] = u"Red while sending waits for the controller's DSR";
inline constexpr char16_t rlsHold[] = u"Red while sending waits for the carrier signal";
inline constexpr char16_t xoffHold[] = u"Red while the controller has stopped the line with XOFF";
inline constexpr char16_t xoffSent[] = u"Red while the line is stopped because XOFF was sent";
// %1 is the caption of the lamp and %2 its tip.
inline constexpr char16_t lampOn[] = u"%1: on. %2";
inline constexpr char16_t lampOff[] = u"%1: off. %2";
inline constexpr char16_t progress[] = u"%1 % of the file is done";
inline constexpr char16_t version[] = u"TarvinDL %1\n%2";
}

// The menu of the main window. A key stands behind the tab.
namespace menu {
inline constexpr char16_t copy[] = u"&Copy\tCtrl+C";
inline constexpr char16_t selectAll[] = u"Select &All\tCtrl+A";
inline constexpr char16_t clear[] = u"C&lear";
inline constexpr char16_t followEnd[] = u"&Follow the End\tEnd";
inline constexpr char16_t resetLink[] = u"&Reset Link";
inline constexpr char16_t xoffTest[] = u"&XOFF/XON Test";
}

// Dialogs: their groups, labels, buttons, tips and file filters.
namespace dialog {
inline constexpr char16_t seenAgain[] = u"Seen %1 times, last at %2.";
inline constexpr char16_t ok[] = u"OK";
inline constexpr char16_t cancel[] = u"Cancel";
inline constexpr char16_t help[] = u"&Help";
inline constexpr char16_t browse[] = u"...";
inline constexpr char16_t cancelDownload[] = u"&Cancel";
inline constexpr char16_t cancelUpload[] = u"C&ancel";
inline constexpr char16_t completeUpload[] = u"&Complete";
inline constexpr char16_t lineGroup[] = u"Settings";
inline constexpr char16_t port[] = u"&Port";
inline constexpr char16_t baudRate[] = u"&Baud Rate";
inline constexpr char16_t parity[] = u"P&arity";
inline constexpr char16_t dataBits[] = u"&Data Bits";
inline constexpr char16_t stopBits[] = u"&Stop Bits";
inline constexpr char16_t flowControl[] = u"&Flow Control";
inline constexpr char16_t characterGroup[] = u"Control Characters";
inline constexpr char16_t sendStartCode[] = u"Send Code to Start Trans&mission";
inline constexpr char16_t startCharacter[] = u"Character sent at the start of a transmission";
inline constexpr char16_t sendEndCode[] = u"Send Code to End Transm&ission";
inline constexpr char16_t endCharacter[] = u"Character sent at the end of a transmission";
inline constexpr char16_t filesGroup[] = u"Files";
inline constexpr char16_t uploadPath[] = u"&Upload Path";
inline constexpr char16_t browseUploadPath[] = u"Browse for the upload folder";
inline constexpr char16_t downloadPath[] = u"Do&wnload Path";
inline constexpr char16_t browseDownloadPath[] = u"Browse for the download folder";
inline constexpr char16_t fileExtension[] = u"File &Extension";
inline constexpr char16_t logGroup[] = u"Activity Log";
inline constexpr char16_t logFile[] = u"&Log File";
inline constexpr char16_t browseLogFile[] = u"Browse for the log file";
inline constexpr char16_t writeLog[] = u"W&rite Log File";
inline constexpr char16_t delayGroup[] = u"Delays";
inline constexpr char16_t characterDelay[] = u"Character Dela&y (milliseconds)";
inline constexpr char16_t lineDelay[] = u"Li&ne Delay (milliseconds)";
inline constexpr char16_t transmitDelay[] = u"&Transmit Delay (Seconds)";
// %1 is the file.
inline constexpr char16_t fileNumber[] = u"Under which number will the machine ask for %1?";
inline constexpr char16_t fileNumberName[] = u"File number";
inline constexpr char16_t checkGroup[] = u"Uploads";
inline constexpr char16_t incomingCheck[] = u"Check Incomin&g Messages";
inline constexpr char16_t replacedFilesKept[] = u"Replaced Files &Kept for Each Number";
inline constexpr char16_t allFiles[] = u"All Files (*.*)";
inline constexpr char16_t ncFiles[] = u"NC files";
inline constexpr char16_t logFiles[] = u"Log files";
inline constexpr char16_t filesWithExtension[] = u"%1 (*.%2)";
// %1 and %2 are the patterns of the system. The first name has no closing parenthesis, as users know it.
inline constexpr char16_t activityLogFilters[] = u"Text files (*.txt|%1|All Files (*.*)|%2";
}

}
