#include "app/AssignPort.h"

namespace tarvin {

Result<KelText> AssignPort(const std::filesystem::path& /*device*/, KelTextView /*commandLine*/) {
    return Error{
        u"A port needs no entry in KEL.INI on Windows; its name, such as COM3, stands in the machine's settings"};
}

}
