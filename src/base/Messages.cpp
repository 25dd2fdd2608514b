#include "base/Messages.h"

namespace tarvin {

KelText Filled(KelTextView text, std::initializer_list<KelTextView> values) {
    KelText result;
    while (!text.empty()) {
        const std::size_t mark = text.find(u'%');
        result += text.substr(0, mark);
        if (mark == KelTextView::npos)
            break;
        text.remove_prefix(mark);
        const std::size_t place = text.size() > 1 ? static_cast<std::size_t>(text[1] - u'1') : values.size();
        if (place < values.size()) {
            result += values.begin()[place];
            text.remove_prefix(2);
        } else {
            result += u'%';
            text.remove_prefix(1);
        }
    }
    return result;
}

}
