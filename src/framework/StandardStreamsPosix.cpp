#include "framework/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace tarvin {

void SecureStandardStreams() {
    // The lowest free number is the one that is given.
    int opened = 0;
    do {
        opened = ::open("/dev/null", O_RDWR);
    } while (opened >= 0 && opened <= STDERR_FILENO);
    if (opened > STDERR_FILENO)
        ::close(opened);
}

}
