#include "ui/ToolkitLog.h"

#include "ui/UiText.h"

namespace tarvin {

void ToolkitLog::DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo&) {
    if (level <= wxLOG_Warning)
        app.Report({static_cast<std::int32_t>(ReportLevel::Warning), {}, FromWx(message), {}, 0});
}

}
