#pragma once
// Writes the toolkit's own warnings and errors to the debug log, where it would show boxes.

#include "messages/AppInterface.h"
#include "ui/Wx.h"

namespace tarvin {

class ToolkitLog : public wxLog {
public:
    // Works until it is destroyed. User-interface thread. `messages` outlives it.
    explicit ToolkitLog(AppInterface& messages) : messages(messages), previousLog(wxLog::SetActiveTarget(this)) {}
    ~ToolkitLog() override { wxLog::SetActiveTarget(previousLog); }

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo&) override {
        if (level <= wxLOG_Warning)
            messages.Report({static_cast<std::int32_t>(ReportLevel::Warning), {}, FromWx(message), {}, 0});
    }

private:
    AppInterface& messages;
    wxLog* const previousLog;
};

}
