#include "messages/MessageReport.h"

#include <iterator>

namespace tarvin {

namespace {

KelText LevelName(std::int32_t level) {
    constexpr KelTextView names[] = {u"WARN", u"NORM", u"FATAL", u"QUERY", u"INFO"};
    if (level < 0 || static_cast<std::size_t>(level) >= std::size(names))
        return ToText(level);
    return KelText(names[level]);
}

}

// Texts begin with their line end: the log of a run begins with an empty line, and its last line stays open.
std::vector<KelText> ReportTexts(const MessageReport& report) {
    const KelText rule = u"\n----------------";
    std::vector<KelText> texts = {
        rule, u"\nMSG:" + LevelName(report.level) + u": \"" + report.message + u"\" (" + ToText(report.answer) + u")",
        u"\n Info: \"" + report.info + u"\""};
    if (!report.details.empty()) {
        texts.push_back(u"\nDetails:\n" + report.details);
        texts.push_back(rule);
    }
    return texts;
}

}
