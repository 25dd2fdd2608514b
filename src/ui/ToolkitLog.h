#pragma once
// Where the toolkit's own complaints go: into the debug log, instead of boxes that nobody has asked for.

#include "messages/AppInterface.h"
#include "ui/Wx.h"

namespace tarvin {

class ToolkitLog : public wxLog {
public:
    // From now on until it is destroyed. User-interface thread.
    explicit ToolkitLog(AppInterface& reportTo) : app(reportTo), before(wxLog::SetActiveTarget(this)) {}
    ~ToolkitLog() override { wxLog::SetActiveTarget(before); }

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info) override;

private:
    AppInterface& app;
    wxLog* const before;
};

}
