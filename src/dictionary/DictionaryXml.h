#pragma once
// A dictionary as XML, the form in which people edit it (docs/dictionary.md describes the elements). Knows nothing of
// files. Any thread.

#include "dictionary/TextEntry.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarvin::dictionary {

struct XmlFault {
    std::size_t line = 0; // counted from 1
    std::string message;
};

// None, with the first fault, for anything that is not a dictionary in every detail.
std::optional<DictionaryContent> ReadXml(std::string_view xml, XmlFault& fault);

// XML from which ReadXml makes the same content. None, with the fault, for content that has none: it breaks a rule that
// ReadXml holds, or has characters that XML does not know.
std::optional<std::string> WriteXml(const DictionaryContent& content, XmlFault& fault);

}
