#pragma once
// Adds to a text profile without touching what a person has written there. Pure: any thread.

#include "base/KelText.h"

#include <string>
#include <string_view>

namespace tarvin {

// The file's bytes with the entry behind the last one of the section, which is made at the end of the file if there is
// none. The file's encoding and line ends are used, and every byte that was there is kept. Section, key and value are
// ASCII. An entry with this key is not looked for; of two the first counts.
std::string WithProfileEntry(std::string_view fileBytes, KelTextView section, KelTextView key, KelTextView value);

}
