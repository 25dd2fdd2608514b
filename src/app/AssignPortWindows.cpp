#include "app/AssignPort.h"
#include "base/Messages.h"

namespace tarvin {

Result<KelText> AssignPort(const std::filesystem::path& /*device*/, KelTextView /*commandLine*/) {
    return Error{text::assignPort::notNeededOnWindows};
}

}
