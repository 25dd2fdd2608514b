// port-host: the serial port of this system at the command of another process. Each line of input is an operation, each
// line of output what came of it: failed, gone, the error's text and the result, with tabs between them. Waking and
// cancelling are done at once and not answered, the others one after the other. Ends with its input.

#include "port/PortNames.h"
#include "port/SerialPort.h"

#include <condition_variable>
#include <deque>
#include <iostream>
#include <mutex>
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

std::string Told(const LineStatus& status) {
    std::ostringstream text;
    text << status.errors << ' ' << status.ctsHold << ' ' << status.dsrHold << ' ' << status.rlsdHold << ' '
         << status.xoffHold << ' ' << status.xoffSent << ' ' << status.inputCount << ' ' << status.outputCount;
    return text.str();
}

std::optional<FlowControl> ReadFlow(std::istream& words) {
    FlowControl flow;
    if (!(words >> flow.software))
        return std::nullopt;
    words >> flow.ctsOutput >> flow.dsrOutput >> flow.dsrSensitivity >> flow.rtsHandshake >> flow.dtrHandshake;
    return flow;
}

PortError Transfer(SerialPort& port, const std::string& operation, std::istream& words, std::string& result) {
    PortError error;
    std::size_t count = 0;
    if (operation == "read") {
        std::size_t size = 0;
        words >> size;
        std::vector<std::uint8_t> room(size);
        error = port.Read(room, count);
        result = Hex({room.data(), count});
    } else {
        std::string hex;
        words >> hex;
        error = port.Write(FromHex(hex), count);
        result = std::to_string(count);
    }
    return error;
}

PortError Configure(SerialPort& port, const std::string& operation, std::istream& words) {
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

PortError Run(SerialPort& port, const std::string& operation, std::istream& words, std::string& result) {
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
    if (operation == "status") {
        LineStatus status;
        PortError error = port.GetStatus(status);
        result = Told(status);
        return error;
    }
    if (operation == "wait") {
        std::int64_t nanoseconds = 0;
        bool isForBytes = false;
        words >> nanoseconds >> isForBytes;
        port.Wait(std::chrono::nanoseconds(nanoseconds),
                  isForBytes ? SerialPort::Awaited::BytesToo : SerialPort::Awaited::WakeOnly);
        return {};
    }
    if (operation == "read" || operation == "write")
        return Transfer(port, operation, words, result);
    return Configure(port, operation, words);
}

// What is to be done, handed from the reader of the input to the port's own thread. An empty line is the end.
class Requests {
public:
    void Add(std::string line) {
        const std::lock_guard lock(mutex);
        lines.push_back(std::move(line));
        changed.notify_one();
    }
    std::string Take() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return !lines.empty(); });
        std::string line = std::move(lines.front());
        lines.pop_front();
        return line;
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::string> lines;
};

void Serve(SerialPort& port, Requests& requests) {
    for (std::string line = requests.Take(); !line.empty(); line = requests.Take()) {
        std::istringstream words(line);
        std::string operation;
        words >> operation;
        std::string result;
        const PortError error = Run(port, operation, words, result);
        std::cout << error.failed << '\t' << error.gone << '\t' << ToUtf8(error.text) << '\t' << result << std::endl;
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
