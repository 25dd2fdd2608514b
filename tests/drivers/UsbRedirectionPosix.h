#pragma once
// Plugs an adapter into the virtual machine: its end of QEMU's usb-redir device. A thread of its own serves the bus.

#include "base/wThread.h"
#include "drivers/UsbAdapter.h"

#include <atomic>
#include <deque>
#include <filesystem>

namespace tarvin::test {

class UsbRedirection : public wThread {
public:
    // `connection` leads to the usb-redir device, which takes one greeting in its life: one object for each machine.
    UsbRedirection(UsbAdapter& adapter, const std::filesystem::path& connection);
    ~UsbRedirection() override;

    void Plug() { SetPlugged(true); }
    void Unplug() { SetPlugged(false); }

protected:
    int Body() override;

private:
    // A packet that the computer has asked for or sent, until it is answered.
    struct Bulk {
        std::uint64_t id;
        std::uint8_t endpoint;
        std::size_t room;
        UsbBytes bytes;
    };

    void SetPlugged(bool isWanted);
    void FollowPlug();
    void ServeBulk();
    bool TakeMessage();
    void HandleMessage(std::uint32_t kind, std::uint64_t id, const UsbBytes& body);
    void HandleRequest(std::uint64_t id, const UsbBytes& body);
    void CancelBulk(std::uint64_t id);
    void AnswerBulk(const Bulk& bulk, std::uint8_t status, const UsbBytes& bytes);
    void Send(std::uint32_t kind, std::uint64_t id, const UsbBytes& body);
    void Greet();
    void DescribeInterface();
    void Wake();

    UsbAdapter& adapter;
    int connection = -1;
    int wakeEvent = -1;
    std::atomic<bool> isPlugWanted = false;
    bool isPlugged = false;
    bool hasGreeting = false;
    UsbBytes incoming;
    std::deque<Bulk> toComputer;
    std::deque<Bulk> toLine;
};

}
