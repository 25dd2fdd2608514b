#include "messages/MessageReport.h"

#include <iterator>

namespace tarvin {

namespace {

constexpr std::int32_t okTextId = 47;
constexpr std::int32_t cancelTextId = 48;
constexpr std::int32_t noTextId = 65;
constexpr std::int32_t yesTextId = 66;

KelText LevelName(std::int32_t level) {
    constexpr KelTextView names[] = {u"WARN", u"NORM", u"FATAL", u"QUERY", u"INFO"};
    if (level < 0 || static_cast<std::size_t>(level) >= std::size(names))
        return ToText(level);
    return KelText(names[level]);
}

}

AutomaticAnswer AutomaticAnswerTo(unsigned style) {
    constexpr AutomaticAnswer ok = {1, okTextId};
    constexpr AutomaticAnswer cancel = {2, cancelTextId};
    constexpr AutomaticAnswer yes = {6, yesTextId};
    constexpr AutomaticAnswer no = {7, noTextId};
    const bool hasThreeButtons = (style & 3) == 3;
    const bool secondIsDefault = (style & defaultButton2) != 0;
    if ((style & yesNo) == 0 && !hasThreeButtons)
        return (style & okCancel) != 0 && secondIsDefault ? cancel : ok;
    if (hasThreeButtons && (style & defaultButton3) != 0)
        return cancel;
    return secondIsDefault ? no : yes;
}

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
