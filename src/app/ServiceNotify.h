#pragma once
// Tells the service manager that has started this process how the service is: systemd on Linux. Without a manager that
// wants to know it, every call does nothing. No call blocks or fails. Any thread.

#include "base/KelText.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

class ServiceNotify {
public:
    // Reads from the environment where the manager listens, and takes that out of it. Before the first thread starts.
    ServiceNotify();
    ~ServiceNotify();
    ServiceNotify(const ServiceNotify&) = delete;
    ServiceNotify& operator=(const ServiceNotify&) = delete;

    // The service serves its machine: after its start, or again after Reloading.
    void Ready();
    // The service takes over changed settings. Ready ends that.
    void Reloading();
    // The service ends in order.
    void Stopping();
    // One line for people: what the service does at present.
    void Status(KelTextView line);

    // How often the manager must hear Alive. It kills a service that is silent for twice as long. None if it does not
    // watch.
    std::optional<std::chrono::microseconds> AlivePeriod() const { return alivePeriod; }
    void Alive();

private:
    void Send(std::string_view message);

    std::string address; // empty: no manager listens
    int socket = -1;
    std::optional<std::chrono::microseconds> alivePeriod;
};

}
