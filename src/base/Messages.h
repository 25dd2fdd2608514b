#pragma once
// The texts of ours that the program shows to a user, each once. Those of windows alone stand in WindowMessages.h,
// usage texts with the command line of their program, and the captions of the line settings' lists with their values,
// because settings files hold them.
//
// Where a text has parts that change, %1 to %9 stand for them, see Filled. An ampersand in a label marks its key.

#include "base/NumberedText.h"

#include <initializer_list>

namespace tarvin {

// The text with `values` in place of %1, %2 ... A value is taken as it is: a percent sign in it stands for itself.
// A place without a value stays as it is.
KelText Filled(KelTextView text, std::initializer_list<KelTextView> values);

namespace text {

// Message boxes: captions and texts.
namespace box {
inline constexpr char16_t errorCaption[] = u"Error";
inline constexpr char16_t problemCaption[] = u"Problem";
inline constexpr char16_t badSettingsCaption[] = u"Warning: Bad INI file load";
inline constexpr char16_t badSettings[] = u"Possible loss of settings";
// %1 is the settings file and %2 the reason, here and below.
inline constexpr char16_t settingsNotRead[] =
    u"The settings file cannot be read and stays as it is; the program goes on with the values of a first run.\n%1: %2";
inline constexpr char16_t settingsNotSaved[] = u"The settings could not be saved.\n%1: %2";
inline constexpr char16_t badDictionary[] = u"Error Opening Specified Dictionary\n%1";
inline constexpr char16_t noHelpBook[] = u"The help book comshelp.htb is missing or damaged.";
inline constexpr char16_t notAscii[] = u"Not a valid ASCII file.";
// %1 is the log file and %2 the reason.
inline constexpr char16_t cannotWriteLog[] = u"Unable to write to log file\n%1: %2";
inline constexpr char16_t cannotWriteHistory[] = u"Unable to write to the history of transfers\n%1: %2";
// %1 is the file that is there.
inline constexpr char16_t replaceCaption[] = u"Replace File";
inline constexpr char16_t replaceNcFile[] = u"%1 is there already. Replace it?";
// %1 is the file to be copied, %2 the one to be made, and %3 the reason.
inline constexpr char16_t notCopied[] = u"%1 could not be copied to %2: %3";
// %1 is the file and %2 the reason.
inline constexpr char16_t trafficNotSaved[] = u"The traffic could not be saved.\n%1: %2";
}

// The steps in which a port is used. A box about a failed step has the step's name as its caption, and the port's name
// and the reason as its text.
namespace portStep {
inline constexpr char16_t closePrevious[] = u"Close Previous Connection";
inline constexpr char16_t open[] = u"Open Comm";
inline constexpr char16_t setQueueSizes[] = u"Set Comm Buffer Sizes";
inline constexpr char16_t fetchState[] = u"Get Comm State";
inline constexpr char16_t applyMode[] = u"Update Comm State";
inline constexpr char16_t commitState[] = u"Set Comm State";
inline constexpr char16_t setTimeouts[] = u"Setup_Timeouts";
inline constexpr char16_t checkStatus[] = u"Comms Status Check";
inline constexpr char16_t read[] = u"Read Data";
inline constexpr char16_t write[] = u"Write Data";
}

// Reasons of ours for a failed step. All others are the system's own words.
namespace portReason {
inline constexpr char16_t noDevice[] = u"The section PORTS of KEL.INI names no device for this port.";
inline constexpr char16_t unsupportedMode[] = u"Unsupported line settings: %1";
inline constexpr char16_t notInGroup[] =
    u"%1. %2 belongs to the group %3; the user who runs the program has to be a member of it.";
// %3 and %4 are of the list below.
inline constexpr char16_t notGranted[] = u"Not granted: the device offers %1 baud, %2 data bits, %3, %4";
// %1 is a file of the system and %2 the system's reason.
inline constexpr char16_t lateReceiving[] =
    u"Answers may be a few milliseconds late, because %1 cannot be set to 1: %2";
}

// Parts of the mode of a line.
namespace lineMode {
inline constexpr char16_t noParity[] = u"no parity";
inline constexpr char16_t evenParity[] = u"even parity";
inline constexpr char16_t oddParity[] = u"odd parity";
inline constexpr char16_t markParity[] = u"mark parity";
inline constexpr char16_t spaceParity[] = u"space parity";
inline constexpr char16_t oneStopBit[] = u"1 stop bit";
inline constexpr char16_t twoStopBits[] = u"2 stop bits";
}

// Told beside the status.
namespace notice {
inline constexpr char16_t heldByXoff[] = u"Held by the machine (XOFF)";
inline constexpr char16_t heldByCts[] = u"Held by the machine (CTS)";
inline constexpr char16_t heldByDsr[] = u"Held by the machine (DSR)";
inline constexpr char16_t takesNothing[] = u"The machine or the adapter takes no characters";
inline constexpr char16_t free[] = u"No longer held by the machine";
// %1 damaged messages, %2 repeats and %3 errors of the driver.
inline constexpr char16_t lineQuality[] = u"Line quality: %1 damaged, %2 repeated, %3 driver errors";
// %1 is a file and %2 its number.
inline constexpr char16_t fileIsReady[] = u"%1 is ready: ask for %2 at the machine";
inline constexpr char16_t sendsChecksums[] = u"The machine sends checksums; its messages are checked from now on";
inline constexpr char16_t sendsNoChecksums[] =
    u"The machine sends no checksums any more; its messages are not checked from now on";
// %1 is the settings file.
inline constexpr char16_t settingsForeign[] =
    u"%1 holds no settings of this program; the values of a new machine count";
inline constexpr char16_t settingsReloaded[] = u"The settings were read again and count from now on";
inline constexpr char16_t settingsWait[] = u"The changed settings count as soon as the transfer has ended";
inline constexpr char16_t settingsNotReloaded[] =
    u"The settings file cannot be used as it is; the present settings stay";
}

// Why a transfer ended or was refused. Follows the status.
namespace transferReason {
inline constexpr char16_t damagedRequest[] = u"the request arrived damaged";
inline constexpr char16_t damagedMessage[] = u"a message of the machine arrived damaged";
inline constexpr char16_t unusableNumber[] = u"no file can have this number";
inline constexpr char16_t newRequest[] = u"the machine has requested another transfer";
inline constexpr char16_t linkTested[] = u"the machine has tested the link";
inline constexpr char16_t lineTested[] = u"the line was tested";
inline constexpr char16_t linkReset[] = u"the link was reset";
inline constexpr char16_t linkLost[] = u"the port was lost";
inline constexpr char16_t portReopened[] = u"the port was opened again";
inline constexpr char16_t noLink[] = u"there is no link";
inline constexpr char16_t charactersLost[] = u"received characters were lost";
inline constexpr char16_t programEnd[] = u"the program has ended";
inline constexpr char16_t noSuchFile[] = u"there is no such file";
inline constexpr char16_t lineRefused[] = u"the machine has refused a line three times (ABNK)";
inline constexpr char16_t nothingReceived[] = u"the machine has sent no file for 10 minutes";
}

// Why a file is refused, where the system gives no reason.
namespace fileReason {
inline constexpr char16_t isFolder[] = u"a folder has this name";
inline constexpr char16_t noRegularFile[] = u"it is no regular file";
inline constexpr char16_t noFolder[] = u"there is no such folder";
inline constexpr char16_t writeProtected[] = u"it is write-protected";
// %1 is the path.
inline constexpr char16_t linkOfOther[] =
    u"%1 is a link in a folder of another user, which root does not follow. Run this as that user";
}

// Why a transfer is refused or has ended, told behind its status.
namespace transferReason {
inline constexpr char16_t otherSends[] = u"another machine is sending this file";
inline constexpr char16_t nameTooLong[] = u"the name is too long";
// %1 is a number of files.
inline constexpr char16_t flood[] =
    u"the machine has sent %1 files with a new number within an hour, and more are refused; the settings say how many";
inline constexpr char16_t moved[] = u"%1 was moved or deleted";
// %1 is the folder for older files and %2 the reason.
inline constexpr char16_t olderNotKept[] = u"the older file cannot be kept in %1: %2";
inline constexpr char16_t olderStays[] = u"no line has come, and the older file stays";
// %1 is the reason and %2 the path.
inline constexpr char16_t wholeIn[] = u"%1; all of it is in %2";
inline constexpr char16_t nameNotTaken[] = u"the older file could not be replaced";
inline constexpr char16_t lineAfterEnd[] = u"a line has come after its end";
inline constexpr char16_t beingWritten[] = u"another program is writing it";
inline constexpr char16_t changed[] = u"it has changed while it was read";
inline constexpr char16_t ambiguousName[] = u"more than one name differs in case alone: %1";
inline constexpr char16_t linkElsewhere[] = u"it is a link to %1, outside the folder";
inline constexpr char16_t tooLarge[] = u"it is larger than %1 bytes";
inline constexpr char16_t noMemory[] = u"there is not enough memory";
inline constexpr char16_t longLine[] = u"line %1 has more than %2 characters";
inline constexpr char16_t strayReturn[] = u"line %1 has a carriage return that ends no line";
inline constexpr char16_t utf16[] = u"it is UTF-16 text";
}

// Why settings are not saved, where the system gives no reason.
namespace settingsReason {
inline constexpr char16_t notReadBefore[] = u"it could not be read when the program began, and stays as it is";
}

// Why a log cannot be written, where the system gives no reason or a vague one. %1 is the system's reason.
namespace logReason {
inline constexpr char16_t notCommsLog[] = u"it is no comms log";
inline constexpr char16_t lostFile[] = u"it was moved or deleted";
inline constexpr char16_t heldByOther[] = u"another program writes it (%1)";
// %1 is a number of lines.
inline constexpr char16_t diskHangs[] = u"the disk does not answer. Lines lost: %1 at most";
}

// The answers of --assign-port, told on the terminal.
namespace assignPort {
inline constexpr char16_t noDeviceGiven[] = u"--assign-port needs a device, such as /dev/ttyUSB0";
inline constexpr char16_t noSuchDevice[] = u"there is no device %1";
inline constexpr char16_t noSerialPort[] = u"%1 is no serial port";
inline constexpr char16_t noHome[] = u"HOME is not set; name an installation folder in TARVINDL_HOME";
inline constexpr char16_t cannotRead[] = u"%1 cannot be read";
inline constexpr char16_t cannotReadOrHeld[] = u"%1 cannot be read, or another program is changing it";
inline constexpr char16_t cannotWrite[] = u"%1 cannot be written";
inline constexpr char16_t cannotMakeInstallation[] = u"an installation cannot be made in %1";
inline constexpr char16_t noPortInSettings[] = u"the settings in %1 name no port from COM1 to COM256";
inline constexpr char16_t settingsNameOther[] = u"%1; the settings in %2 name %3";
inline constexpr char16_t assigned[] = u"%1 is %2; the settings of %3 are in %4.";
inline constexpr char16_t madeInstallation[] = u"Made an installation in %1\n";
inline constexpr char16_t allNamesTaken[] = u"KEL.INI has an entry for each port name";
inline constexpr char16_t nameTaken[] = u"KEL.INI gives %1 to %2";
inline constexpr char16_t emptyEntry[] = u"KEL.INI has an empty entry for %1";
inline constexpr char16_t cannotHoldName[] = u"KEL.INI cannot hold the name of %1";
inline constexpr char16_t noRoom[] = u"%1 has no room for an entry";
inline constexpr char16_t notNeededOnWindows[] =
    u"A port needs no entry in KEL.INI on Windows; its name, such as COM3, stands in the machine's settings";
}

// Why a program does not start: told on standard error, and by the desktop program in a box too if there is an
// installation.
namespace start {
inline constexpr char16_t corruptCaption[] = u"Corrupt Installation";
inline constexpr char16_t noInstallation[] =
    u"No installation of TarvinDL was found: no folder with a readable KEL.INI";
inline constexpr char16_t noProgramPaths[] =
    u"Unable to locate Program Paths in %1: KEL.INI there has no section PROGRAM PATHS";
// %2 is the system's reason.
inline constexpr char16_t unreadablePaths[] = u"Unable to locate Program Paths in %1: KEL.INI there cannot be read. %2";
}

// Reports: written to the debug log.
namespace report {
inline constexpr char16_t suppressedListDamaged[] = u"Not every line of the list of suppressed messages is a number";
inline constexpr char16_t suppressedListUnreadable[] = u"The list of suppressed messages cannot be read";
inline constexpr char16_t suppressedListUnwritten[] = u"The list of suppressed messages cannot be written";
}

// Status texts. %1 is the file, unless a comment says something else.
namespace status {
inline constexpr char16_t noLink[] = u"No Link";
inline constexpr char16_t waiting[] = u"Waiting...";
inline constexpr char16_t linkTest[] = u"Loop Back Test";
inline constexpr char16_t directoryListing[] = u"Directory Listing";
inline constexpr char16_t controllerOption[] = u"NC Controller Option";
inline constexpr char16_t downloadWaiting[] = u"Download Waiting For Controller";
inline constexpr char16_t downloadRequested[] = u"Download Request Received";
inline constexpr char16_t uploadRequested[] = u"Upload Request Received";
inline constexpr char16_t downloadPreparation[] = u"Download Preparation";
inline constexpr char16_t downloadCouldNotOpen[] = u"Download could not open/read from %1";
inline constexpr char16_t uploadCouldNotOpen[] = u"Upload could not open/write to %1";
inline constexpr char16_t uploadPreparation[] = u"Upload Preparation";
inline constexpr char16_t downloading[] = u"Downloading %1 - %2 of %3 bytes sent.";
inline constexpr char16_t uploading[] = u"Uploading %1 - %2 bytes received.";
inline constexpr char16_t downloadErrors[] = u"Download Error(s) %1";
inline constexpr char16_t uploadErrors[] = u"Upload Error(s) %1";
inline constexpr char16_t downloadCancelled[] = u"Download Cancelled %1";
inline constexpr char16_t uploadCancelled[] = u"Upload Cancelled %1";
inline constexpr char16_t downloadCompleted[] = u"Download Completed %1 - %2 bytes";
inline constexpr char16_t uploadCompleted[] = u"Upload Completed %1 - %2 bytes in file.";
inline constexpr char16_t autoloadCutting[] = u"Autoload Cutting %1";
inline constexpr char16_t loopbackFailure[] = u"Local Loopback Test Failure";
inline constexpr char16_t loopbackSuccess[] = u"Local Loopback Test Success";
inline constexpr char16_t directoryError[] = u"Directory Listing: Error";
inline constexpr char16_t overrun[] = u"Over Run Error! Data loss has occurred!";
inline constexpr char16_t unexpectedError[] = u"Unexpected error %1";
inline constexpr char16_t fileFormatError[] = u"File format error %1";
inline constexpr char16_t itemNotFound[] = u"Item not found error %1";
// Below, %1 is this station and %2 the other one.
inline constexpr char16_t serverCannotFindClient[] = u"Server: %1 cannot find DNC Client";
inline constexpr char16_t clientCannotFindServer[] = u"Client: %1 cannot find DNC Server";
inline constexpr char16_t serverFoundClient[] = u"Server: %1 has found DNC Client: %2";
inline constexpr char16_t clientFoundServer[] = u"Client: %1 has found DNC Server: %2";
inline constexpr char16_t secondClient[] = u"Configuration Error! Client: %1 has found 2nd DNC Client: %2!";
inline constexpr char16_t secondServer[] = u"Configuration Error! Server has found 2nd DNC Server!";
inline constexpr char16_t serverChecksList[] = u"Server: %1 Checking NC File List";
inline constexpr char16_t clientRequestsList[] = u"Client: %1 Requesting File List from Server: %2";
inline constexpr char16_t fileListCompare[] = u"Client: %1 Comparing NC File Lists";
inline constexpr char16_t fileRequest[] = u"Client: %1 Requesting NC File";
inline constexpr char16_t synchronisationCompleted[] = u"Client: %1 NC File Synchronisation Completed";
}

// Lines of the trace and of the comms log that stand for no bytes.
namespace trace {
inline constexpr char startOfLogging[] = "Start of logging";
inline constexpr char endOfLogging[] = "End of Logging";
inline constexpr char programEnd[] = "Application Terminated";
inline constexpr char16_t downloadDelayed[] = u"Download delayed for %1 second(s).";
inline constexpr char16_t notSent[] =
    u"Not sent: the last %1 bytes. The line was held, and the controller has spoken again.";
// %1 is a number of seconds and %2 the reason.
inline constexpr char16_t logGap[] = u"... nothing logged for %1 seconds: %2 ...";
inline constexpr char16_t linesNotLogged[] = u"... %1 lines not logged ...";
inline constexpr char16_t linesNotShown[] = u"... %1 lines not shown ...";
}

// Lines of the activity log that stand for no status.
namespace activity {
inline constexpr char16_t linesNotWritten[] = u"... %1 lines not written ...";
// %1 is why rows of the history are lost.
inline constexpr char16_t historyNotWritten[] = u"... history not written: %1 ...";
}

// Lines that the service prints.
namespace service {
inline constexpr char16_t programEnd[] = u"Application Terminated";
inline constexpr char16_t linesNotPrinted[] = u"... %1 lines not printed ...";
}

// What the settings dialog says about a setting.
namespace setting {
inline constexpr NumberedText folderNeeded = {21600, u"A folder is needed here."};
inline constexpr NumberedText folderMissing = {21601, u"This folder does not exist."};
inline constexpr NumberedText notFolder = {21602, u"This is not a folder."};
inline constexpr NumberedText badExtension = {
    21603, u"An extension cannot hold / \\ : * ? \" < > | or end with a dot or a blank."};
inline constexpr NumberedText logFileNeeded = {21604, u"A file is needed here as long as the log is written."};
inline constexpr NumberedText logFileIsFolder = {21605, u"This is a folder; a file is needed."};
inline constexpr NumberedText logFolderMissing = {21606, u"The folder of this file does not exist."};
inline constexpr NumberedText mayStay = {21607, u"%1 Press OK once more to keep it."};
inline constexpr NumberedText oneAndAHalfStopBits = {
    21608, u"With 7 or 8 data bits most ports refuse 1.5 stop bits, and Linux has none."};
inline constexpr NumberedText badNumber = {21609, u"No file can have this number."};
inline constexpr NumberedText noDeviceKnown = {21610, u"no device known"};
}

// Captions of windows and dialogs, those of the system's dialogs included. The caption of the main window is the
// engine's.
namespace caption {
inline constexpr char16_t noLink[] = u"%1 - No Link";
inline constexpr char16_t downloadSettings[] = u"Download Settings";
inline constexpr char16_t sendingFile[] = u"Sending NC File";
inline constexpr char16_t receivingFile[] = u"Receiving NC File";
inline constexpr char16_t openNcFile[] = u"Open NC file";
inline constexpr char16_t saveNcFile[] = u"Save NC file as";
inline constexpr char16_t saveLogFile[] = u"Save Log File As";
inline constexpr char16_t uploadPath[] = u"Upload Path";
inline constexpr char16_t downloadPath[] = u"Download Path";
}

// Texts that the program looks up in the dictionary by their number, and shows in English without one.
namespace dictionary {
inline constexpr NumberedText ok = {47, u"Ok"};
inline constexpr NumberedText cancel = {48, u"Cancel"};
inline constexpr NumberedText no = {65, u"No"};
inline constexpr NumberedText yes = {66, u"Yes"};
inline constexpr NumberedText warning = {274, u"Warning"};
inline constexpr NumberedText problem = {290, u"Problem"};
inline constexpr NumberedText ignore = {1492, u"Continue"};
inline constexpr NumberedText close = {1786, u"Close"};
inline constexpr NumberedText yesToAll = {3817, u"Yes to All"};
inline constexpr NumberedText retry = {3909, u"Retry"};
inline constexpr NumberedText noToAll = {3912, u"No to All"};
inline constexpr NumberedText abort = {4550, u"Abort"};
inline constexpr NumberedText dontShowAgain = {6069, u"Don't Show This Message Again"};
inline constexpr NumberedText quit = {6144, u"Quit"};
inline constexpr NumberedText all[] = {ok,    cancel,   no,    yes,     warning, problem,       ignore,
                                       close, yesToAll, retry, noToAll, abort,   dontShowAgain, quit};
}
}

}
