#include "files/FileNames.h"

#include <algorithm>
#include <iterator>

namespace tarvin {

namespace {

bool IsForbidden(char16_t unit) {
    constexpr KelTextView reserved = u"/\\:*?\"<>|";
    return unit < 0x20 || unit == 0x7F || reserved.find(unit) != KelTextView::npos;
}

// With the extension of a settings file the name would be that of KEL.INI, which every machine of the installation
// needs. In any case: Windows does not tell cases apart.
bool IsProgramFile(KelTextView name) {
    return EqualIgnoringCase(name, u"KEL");
}

}

bool IsDeviceName(KelTextView fileName) {
    constexpr KelTextView devices[] = {u"CON", u"PRN", u"AUX", u"NUL", u"CONIN$", u"CONOUT$", u"CLOCK$"};
    // Windows takes the superscript digits 1 to 3 for digits of a device's name.
    constexpr KelTextView digits = u"123456789\u00B9\u00B2\u00B3";
    // Windows ignores the extension and the blanks before it.
    const KelTextView base = Trimmed(fileName.substr(0, fileName.find(u'.')));
    if (base.size() == 4 && digits.find(base.back()) != KelTextView::npos) {
        const KelTextView kind = base.substr(0, 3);
        return EqualIgnoringCase(kind, u"COM") || EqualIgnoringCase(kind, u"LPT");
    }
    return std::any_of(std::begin(devices), std::end(devices),
                       [&](KelTextView device) { return EqualIgnoringCase(base, device); });
}

KelText FileNameFor(KelTextView name) {
    KelText fileName(name);
    std::replace_if(fileName.begin(), fileName.end(), IsForbidden, u'_');
    // Windows drops dots and blanks at the end. A name of dots alone is a folder on every system.
    for (auto unit = fileName.rbegin(); unit != fileName.rend() && (*unit == u'.' || *unit == u' '); ++unit)
        *unit = u'_';
    return IsDeviceName(fileName) || IsProgramFile(fileName) ? u'_' + fileName : fileName;
}

KelText WithOwnSeparators(KelText path) {
    std::replace_if(
        path.begin(), path.end(), [](char16_t unit) { return unit == u'/' || unit == u'\\'; }, pathSeparator);
    return path;
}

}
