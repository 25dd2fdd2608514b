#include "port/LineDriverPosix.h"

#include "base/Messages.h"
#include "base/System.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <linux/major.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace tarvin {

namespace {

dev_t DeviceNumber(int device) {
    struct stat state = {};
    return ::fstat(device, &state) == 0 && S_ISCHR(state.st_mode) ? state.st_rdev : 0;
}

// Where the kernel shows what it knows of the device.
std::filesystem::path SystemFolder(int device) {
    const dev_t number = DeviceNumber(device);
    return "/sys/dev/char/" + std::to_string(major(number)) + ":" + std::to_string(minor(number));
}

// Writes "1" into a number of the system that is greater. Returns the file's reason if that is not permitted.
std::optional<KelText> LowerToOne(const std::filesystem::path& path) {
    char digits[16] = "";
    const int readable = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isGreater = readable >= 0 && ::read(readable, digits, sizeof digits - 1) > 0 && std::atoi(digits) > 1;
    if (readable >= 0)
        ::close(readable);
    if (!isGreater)
        return std::nullopt;
    const int writable = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    const bool isSet = writable >= 0 && ::write(writable, "1", 1) == 1;
    const int error = errno;
    if (writable >= 0)
        ::close(writable);
    // A chip without such a setting refuses it for other reasons, which no right would change.
    if (isSet || (error != EACCES && error != EPERM && error != EROFS))
        return std::nullopt;
    return Filled(text::portReason::lateReceiving,
                  {path.u16string(), SystemErrorText(static_cast<unsigned long>(error))});
}

}

LineDriver DriverOf(int device) {
    const auto number = major(DeviceNumber(device));
    if (number >= UNIX98_PTY_SLAVE_MAJOR && number < UNIX98_PTY_SLAVE_MAJOR + UNIX98_PTY_MAJOR_COUNT)
        return LineDriver::PseudoTerminal;
    // The serial core shows the clock of the chip for each of its ports. The type that TIOCGSERIAL gives tells less:
    // drivers of USB adapters claim to be a chip of the board.
    return ::access((SystemFolder(device) / "uartclk").c_str(), F_OK) == 0 ? LineDriver::SerialCore : LineDriver::Other;
}

bool SendsFiveBitsAsEight(int device) {
    // FTDI's chips have 7 and 8 data bits. The driver lets 5 pass for card readers that use it as a switch.
    std::error_code hasNoDriver;
    const auto driver = std::filesystem::read_symlink(SystemFolder(device) / "device" / "driver", hasNoDriver);
    return driver.filename() == "ftdi_sio";
}

std::optional<KelText> SpeedUpReceiving(int device) {
    // An FTDI adapter keeps received bytes for up to 16 ms without it. Many drivers do not know the flag and are fast
    // anyway, so a refusal is ignored.
    serial_struct serial = {};
    if (::ioctl(device, TIOCGSERIAL, &serial) == 0) {
        serial.flags |= ASYNC_LOW_LATENCY;
        (void)::ioctl(device, TIOCSSERIAL, &serial);
    }
    // A 16550 reports bytes when its queue is filled up to the trigger, or when the line has been idle for four
    // characters. The end of a message seldom fills the queue. For an FTDI adapter this is the time in milliseconds.
    const std::filesystem::path folder = SystemFolder(device);
    std::optional<KelText> advice = LowerToOne(folder / "rx_trig_bytes");
    return advice ? advice : LowerToOne(folder / "device" / "latency_timer");
}

}
