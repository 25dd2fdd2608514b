// port-host: does the operations of the serial port for another process. Each line of input is an operation. Each line
// of output is its answer: failed, gone, the error's text and the values, with tabs between them. "wake" and "cancel"
// are done at once and have no answer, the others are done one after the other. The program ends with its input.

#include "base/Mutex.h"
#include "port/PortNames.h"
#include "port/SerialPort.h"

#include <deque>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using namespace tarvin;

namespace {

std::string Hex(std::span<const std::uint8_t> bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

std::vector<std::uint8_t> FromHex(const std::string& text) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t index = 0; index + 1 < text.size(); index += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(text.substr(index, 2), nullptr, 16)));
    return bytes;
}

std::string ValuesOf(const LineStatus& status) {
    std::ostringstream text;
    text << status.errors.parity << ' ' << status.errors.framing << ' ' << status.errors.overrun << ' '
         << status.errors.breaks << ' ' << status.holds.cts << ' ' << status.holds.dsr << ' ' << status.holds.rlsd
         << ' ' << status.holds.xoff << ' ' << status.holds.xoffSent << ' ' << status.inputCount << ' '
         << status.outputCount;
    return text.str();
}

std::optional<FlowControl> ReadFlow(std::istream& words) {
    FlowControl flow;
    if (!(words >> flow.software))
        return std::nullopt;
    words >> flow.ctsOutput >> flow.dsrOutput >> flow.dsrSensitivity >> flow.rtsHandshake >> flow.dtrHandshake;
    return flow;
}

Result<> Read(SerialPort& port, std::istream& words, std::string& values) {
    std::size_t size = 0;
    words >> size;
    std::vector<std::uint8_t> room(size);
    const auto count = port.Read(room);
    if (!count)
        return count.Reason();
    values = Hex({room.data(), *count});
    return {};
}

Result<> Write(SerialPort& port, std::istream& words, std::string& values) {
    std::string hex;
    words >> hex;
    std::size_t count = 0;
    Result<> result = port.Write(FromHex(hex), count);
    values = std::to_string(count);
    return result;
}

Result<> Configure(SerialPort& port, const std::string& operation, std::istream& words) {
    if (operation == "queues") {
        std::size_t input = 0;
        std::size_t output = 0;
        words >> input >> output;
        return port.SetQueueSizes(input, output);
    }
    if (operation == "fetch")
        return port.FetchState();
    if (operation == "mode") {
        std::string mode;
        std::getline(words >> std::ws, mode);
        return port.ApplyMode(mode);
    }
    if (operation == "commit")
        return port.CommitState(ReadFlow(words));
    int milliseconds = 0;
    words >> milliseconds;
    return port.SetTimeouts(std::chrono::milliseconds(milliseconds));
}

Result<> Run(SerialPort& port, const std::string& operation, std::istream& words, std::string& values) {
    if (operation == "open") {
        std::string name;
        words >> name;
        return port.Open(FromUtf8(name));
    }
    if (operation == "close")
        return port.Close();
    if (operation == "purge") {
        port.Purge();
        return {};
    }
    if (operation == "release")
        return port.ReleaseXoff();
    if (operation == "status") {
        const auto status = port.GetStatus();
        if (!status)
            return status.Reason();
        values = ValuesOf(*status);
        return {};
    }
    if (operation == "wait") {
        std::int64_t nanoseconds = 0;
        bool isForBytes = false;
        words >> nanoseconds >> isForBytes;
        port.Wait(std::chrono::nanoseconds(nanoseconds),
                  isForBytes ? SerialPort::Awaited::BytesToo : SerialPort::Awaited::WakeOnly);
        return {};
    }
    if (operation == "read")
        return Read(port, words, values);
    if (operation == "write")
        return Write(port, words, values);
    return Configure(port, operation, words);
}

// Hands requests from the thread that reads the input to the thread that uses the port. An empty line is the end.
class Requests {
public:
    void Add(std::string line) {
        const MutexLock lock(mutex);
        lines.push_back(std::move(line));
        changed.NotifyAll();
    }
    std::string Take() {
        const MutexLock lock(mutex);
        while (lines.empty())
            changed.Wait(mutex);
        std::string line = std::move(lines.front());
        lines.pop_front();
        return line;
    }

private:
    Mutex mutex;
    Condition changed;
    std::deque<std::string> lines GUARDED_BY(mutex);
};

void Serve(SerialPort& port, Requests& requests) {
    for (std::string line = requests.Take(); !line.empty(); line = requests.Take()) {
        std::istringstream words(line);
        std::string operation;
        words >> operation;
        std::string values;
        const Result<> result = Run(port, operation, words, values);
        const Error error = result ? Error() : result.Reason();
        std::cout << !result << '\t' << error.isGone << '\t' << ToUtf8(error.text) << '\t' << values << std::endl;
    }
}

}

int main() {
    const PortNames names("KEL.INI");
    const auto port = MakeSerialPort(names);
    Requests requests;
    std::thread server([&] { Serve(*port, requests); });
    for (std::string line; std::getline(std::cin, line);) {
        if (line == "wake")
            port->Wake();
        else if (line == "cancel")
            port->CancelWrite();
        else
            requests.Add(line);
    }
    port->CancelWrite();
    port->Wake();
    requests.Add({});
    server.join();
}
