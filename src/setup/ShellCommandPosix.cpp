#include "base/Messages.h"
#include "port/DeviceRightsPosix.h"
#include "setup/ShellCommand.h"

namespace tarvin {

KelText ShellCommand(KelTextView form, KelTextView first, KelTextView second) {
    return Filled(form, {ShellWord(first), ShellWord(second)});
}

}
