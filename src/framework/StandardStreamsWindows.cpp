#include "framework/StandardStreams.h"

namespace tarvin {

// Handles are not given out by number here.
void SecureStandardStreams() {}

}
