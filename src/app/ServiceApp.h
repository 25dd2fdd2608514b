#pragma once
// The service to the framework: nobody is there, and what a user would see becomes a line of output. Knows nothing of
// the engine.

#include "app/ServiceOutput.h"
#include "messages/AppInterface.h"

namespace tarvin {

class ServiceApp : public AppInterface {
public:
    ServiceApp(const AppFolders& folders, ServiceOutput& serviceOutput)
        : AppInterface(folders, Attendance::Unattended), output(serviceOutput) {}

protected:
    int Show(const MessageBoxText& box) override { return AutomaticAnswerTo(box.style).answer; }
    void AppendToMessageLog(KelTextView text) override;

private:
    ServiceOutput& output;
};

}
