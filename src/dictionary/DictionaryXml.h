#pragma once
// A dictionary as XML, the form in which people edit it. docs/dictionary.md describes the elements. Any thread.

#include "base/Result.h"
#include "dictionary/DictionaryContent.h"

#include <string>
#include <string_view>

namespace tarvin::dictionary {

// Fails if any detail is wrong. The reason is "line N: " and the first fault; lines count from 1.
Result<DictionaryContent> ReadXml(std::string_view xml);

// XML from which ReadXml makes the same content. Fails if there is no such XML: the content breaks a rule of ReadXml or
// holds characters that XML does not allow. The reason is the number of the language or of the entry, with its id, and
// the fault; both count from 1.
Result<std::string> WriteXml(const DictionaryContent& content);

}
