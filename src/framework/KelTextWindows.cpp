#include "framework/KelText.h"

namespace tarvin {

std::filesystem::path ToPath(KelTextView text) {
    return std::filesystem::path(std::wstring(text.begin(), text.end()));
}

KelText FromPath(const std::filesystem::path& path) {
    const std::wstring& native = path.native();
    return KelText(native.begin(), native.end());
}

}
