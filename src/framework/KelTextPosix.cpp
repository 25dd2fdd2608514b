#include "framework/KelText.h"

namespace tarvin {

std::filesystem::path ToPath(KelTextView text) {
    return std::filesystem::path(ToUtf8(text));
}

KelText FromPath(const std::filesystem::path& path) {
    return FromUtf8(path.native());
}

}
