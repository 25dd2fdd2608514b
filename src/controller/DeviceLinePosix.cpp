// Opens a serial device with the settings of a controller's line.

#include "base/System.h"
#include "controller/DescriptorLinePosix.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::controller {

namespace {

struct BaudRate {
    unsigned bitsPerSecond;
    speed_t code;
};

constexpr BaudRate rates[] = {
    {110, B110},       {300, B300},       {600, B600},       {1200, B1200},     {2400, B2400},
    {4800, B4800},     {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600},
    {115200, B115200}, {230400, B230400}, {460800, B460800}, {921600, B921600},
};

const BaudRate* FindRate(unsigned bitsPerSecond) {
    for (const BaudRate& rate : rates) {
        if (rate.bitsPerSecond == bitsPerSecond)
            return &rate;
    }
    return nullptr;
}

bool SetUp(int descriptor, speed_t speed) {
    termios settings = {};
    if (::tcgetattr(descriptor, &settings) != 0)
        return false;
    ::cfmakeraw(&settings);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | CRTSCTS | HUPCL);
    settings.c_cflag |= CLOCAL | CREAD;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    return ::cfsetispeed(&settings, speed) == 0 && ::cfsetospeed(&settings, speed) == 0 &&
           ::tcsetattr(descriptor, TCSANOW, &settings) == 0 && ::tcflush(descriptor, TCIOFLUSH) == 0;
}

// Call at once after the system call that failed: its error number is still in errno then.
Error Failure(const std::string& device) {
    return {FromUtf8(device + ": ") + SystemErrorText(static_cast<unsigned long>(errno))};
}

}

Result<std::unique_ptr<ControllerLine>> OpenDevice(const std::string& device, unsigned bitsPerSecond) {
    const BaudRate* rate = FindRate(bitsPerSecond);
    if (rate == nullptr)
        return Error{FromUtf8(std::to_string(bitsPerSecond) + " bits per second are not supported")};
    const int descriptor = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return Failure(device);
    if (!SetUp(descriptor, rate->code)) {
        const Error error = Failure(device);
        ::close(descriptor);
        return error;
    }
    // Without a check, because some drivers do not offer exclusive use.
    ::ioctl(descriptor, TIOCEXCL);
    return std::unique_ptr<ControllerLine>(std::make_unique<DescriptorLine>(descriptor));
}

}
