#include "framework/SystemErrorText.h"

#include <system_error>

namespace tarvin {

KelText SystemErrorText(unsigned long errorNumber) {
    return FromUtf8(std::generic_category().message(static_cast<int>(errorNumber & 0xFFFF)));
}

}
