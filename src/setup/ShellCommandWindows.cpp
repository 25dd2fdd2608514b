#include "setup/ShellCommand.h"

namespace tarvin {

KelText ShellCommand(KelTextView /*form*/, KelTextView /*first*/, KelTextView /*second*/) {
    return {};
}

}
