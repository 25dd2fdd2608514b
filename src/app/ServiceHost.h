#pragma once
// The surroundings of a running service: where its lines go, and who learns of its start and end.

#include "app/ServiceOutput.h"

namespace tarvin {

class ServiceHost {
public:
    virtual ~ServiceHost() = default;

    // Prints a line. The printing thread.
    virtual void Print(const ServiceLine& line) = 0;
    // Tells why the service cannot start. The main thread of the service; the other calls below too.
    virtual void TellFailure(KelTextView reason) = 0;
    // Prepares for requests to end the service. Called before the service starts its first thread.
    virtual void PrepareStop() = 0;
    // The engine serves its machine from now on.
    virtual void ReportServing() = 0;
    // The service has ended; its process follows.
    virtual void ReportEnd(int exitCode) = 0;
};

// A terminal, a pipe or a file: standard output for the lines, standard error for a failure.
class TerminalHost : public ServiceHost {
public:
    void Print(const ServiceLine& line) override;
    void TellFailure(KelTextView reason) override;
    void PrepareStop() override;
    void ReportServing() override {}
    void ReportEnd(int) override {}
};

}
