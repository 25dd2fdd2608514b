#pragma once
// The texts of tarvindl-setup, of the check of a machine and of its folders, each once. They are told on a console,
// which speaks English, apart from those with numbers. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// What the value of a setting may be.
namespace settingValue {
// %1 is the name of the setting, %2 the value and %3 the allowed values.
inline constexpr char16_t refused[] = u"%1 cannot be \"%2\". Allowed: %3";
inline constexpr char16_t port[] = u"COM1 to COM256";
// %1 is the highest number.
inline constexpr char16_t number[] = u"a number from 0 to %1";
inline constexpr char16_t flag[] = u"0 (off), 1 (on)";
inline constexpr char16_t character[] = u"a name such as DC2 or EOT, or a number from 0 to 255";
inline constexpr char16_t text[] = u"a text without control characters";
// %1 is a name and %2 all names.
inline constexpr char16_t unknown[] = u"There is no setting \"%1\". Settings: %2";
inline constexpr char16_t noValue[] = u"--set takes NAME=VALUE, not %1";
// %1 is the name of the setting and %2 its problem.
inline constexpr char16_t problem[] = u"%1: %2";
}

// What was done, and why it was not.
namespace setup {
inline constexpr char16_t installationMade[] = u"Made the installation %1";
inline constexpr char16_t installationThere[] = u"Already so: the installation %1";
inline constexpr char16_t folderMade[] = u"Made the folder %1";
inline constexpr char16_t dataMissing[] =
    u"%1 was not found beside the program: texts are English, or there is no help";
// %1 is the machine and %2 its settings file.
inline constexpr char16_t machineMade[] = u"Made the machine %1: its settings are in %2";
inline constexpr char16_t machineChanged[] = u"Changed the settings of %1 in %2";
inline constexpr char16_t machineThere[] = u"Already so: the settings of %1 in %2";
inline constexpr char16_t machineUnknown[] = u"There is no machine %1: %2 is missing. Make it with: tarvindl-setup %1";
// %1 is the device and %2 the port.
inline constexpr char16_t portNamed[] = u"%1 is %2";
inline constexpr char16_t noPort[] = u"Which port leads to the machine? Give it with --port. Ports: %1";
inline constexpr char16_t noPorts[] = u"none found";
inline constexpr char16_t noPortName[] = u"%1 is neither a port from COM1 to COM256 nor a device";
// %1 is a file and %2 the reason.
inline constexpr char16_t cannotWrite[] = u"%1 cannot be written: %2";
inline constexpr char16_t cannotMake[] = u"%1 cannot be made: %2";
inline constexpr char16_t notRoot[] = u"--system needs the rights of root. Try: sudo tarvindl-setup --system";
// %1 is the machine.
inline constexpr char16_t checkAsService[] =
    u"Root may use every folder and port. What the service may use, it says itself: sudo -u tarvindl tarvindl-service "
    u"--check %1";
inline constexpr char16_t noSystemPlace[] = u"The system names no folder for an installation";
inline constexpr char16_t cannotRead[] = u"%1 cannot be read: %2";
inline constexpr char16_t isDamaged[] = u"The settings in %1 are damaged; what is left of them counts";
// %1 is the setting and %2 the settings file.
inline constexpr char16_t notInProfile[] =
    u"%1 cannot be kept in %2: the file is a text, in which a value ends after 79 characters. Use a shorter value, or "
    u"let a program serve the machine once: at its end it saves the settings in a form without this limit";
inline constexpr char16_t inputEnded[] = u"The input has ended before the last question. Nothing was made or changed";
inline constexpr char16_t badName[] = u"A machine's name has no control characters, no blanks at its ends, no word "
                                      u"that begins with \"--\", no \"/l=\" at "
                                      u"its beginning, and at most 200 characters: \"%1\" cannot be one";
// %1 is a machine and %2 a port.
inline constexpr char16_t portShared[] = u"%1 has %2 too: one program at a time can serve it";
// %1 is the port and %2 its state.
inline constexpr char16_t portAway[] = u"%1 leads to no port now: %2";
}

// Questions on the terminal. %1 is the answer that an empty line gives.
namespace setupQuestion {
inline constexpr char16_t machine[] = u"Name of the machine [%1]: ";
inline constexpr char16_t port[] = u"Port, as a number of this list, COM number or device [%1]: ";
inline constexpr char16_t speed[] = u"Speed in baud [%1]: ";
inline constexpr char16_t upload[] = u"Folder for files from the machine [%1]: ";
inline constexpr char16_t download[] = u"Folder for files to the machine [%1]: ";
inline constexpr char16_t extension[] = u"Extension of the files, empty for none [%1]: ";
inline constexpr char16_t controller[] =
    u"Controller, \"by number\" if it asks for files itself, else \"by hand\" [%1]: ";
inline constexpr char16_t language[] = u"Language of the window, empty for the system's [%1]: ";
}

// The reload of a program that runs.
namespace setupReload {
// %1 is the machine, here and below.
inline constexpr char16_t done[] = u"The program that serves %1 has read the settings again";
inline constexpr char16_t later[] = u"The program that serves %1 takes the settings over when its transfer has ended";
inline constexpr char16_t refused[] =
    u"The program that serves %1 cannot use the settings file, and keeps its settings";
inline constexpr char16_t silent[] = u"The program that serves %1 does not answer";
inline constexpr char16_t gone[] =
    u"The program that serves %1 takes no requests of this user. Run this as its user or as root";
inline constexpr char16_t notRunning[] = u"No program serves %1 now: the settings count from its next start";
// %2 is the number of a process.
inline constexpr char16_t needed[] =
    u"Process %2 serves %1 with the settings it had. They count after: tarvindl-setup %1 --reload";
}

// The files for systemd and udev.
namespace setupUnits {
inline constexpr char16_t written[] = u"Wrote %1";
inline constexpr char16_t removed[] = u"Removed %1";
inline constexpr char16_t there[] = u"Already so: %1";
// %1 is a command and %2 its exit code.
inline constexpr char16_t commandFailed[] = u"\"%1\" has failed (%2): run it again";
inline constexpr char16_t strangeFolder[] =
    u"Left out: a folder of the settings with control characters in its name. Correct it with --set";
inline constexpr char16_t takesRestart[] = u"New folders count for the service after: systemctl restart %1";
}

// The check of a machine. %1 is a path, unless a comment says otherwise.
namespace check {
inline constexpr char16_t installation[] = u"Installation: %1";
inline constexpr char16_t settingsRead[] = u"Settings: %1";
inline constexpr char16_t settingsNone[] = u"Settings: %1 is missing. A start uses the values of a new machine";
inline constexpr char16_t settingsRefused[] = u"Settings: %1";
// %1 is the port, %2 its device, %3 the line and %4 the state.
inline constexpr char16_t port[] = u"Port: %1 (%2), %3: %4";
inline constexpr char16_t noDevice[] =
    u"Port: %1 has no device in KEL.INI. Give it one with: tarvindl-setup %2 --port DEVICE";
inline constexpr char16_t uploads[] = u"Files from the machine go to %1";
inline constexpr char16_t downloads[] = u"Files for the machine come from %1";
// %1 is the setting's name and %2 the problem.
inline constexpr char16_t setting[] = u"Setting %1: %2";
// %2 is the number of a process.
inline constexpr char16_t served[] = u"Process %2 serves %1 now";
inline constexpr char16_t wouldServe[] = u"A start would serve %1 at %2";
inline constexpr char16_t wrong[] = u"Wrong: %1";
inline constexpr char16_t mend[] = u"    Mend it with: %1";
}

// What is wrong with a folder. %1 is the folder.
namespace folderProblem {
inline constexpr NumberedText missing = {22000, u"The folder %1 does not exist."};
inline constexpr NumberedText notFolder = {22001, u"%1 is not a folder."};
// %2 is the user and %3 the reason.
inline constexpr NumberedText notReadable = {22002, u"%2 may not read the folder %1: %3"};
inline constexpr NumberedText notWritable = {22003, u"%2 may not write into the folder %1: %3"};
inline constexpr NumberedText noDrive = {
    22004, u"This account has no drive for %1. Use a path such as \\\\server\\share in place of the drive letter."};
}

// Commands. %1 and %2 are words of a shell.
namespace folderCommand {
inline constexpr char16_t make[] = u"mkdir -p %1";
inline constexpr char16_t give[] = u"sudo chgrp %2 %1 && sudo chmod g+rwxs %1";
}

}
