#include "files/Links.h"

#include "base/Messages.h"

namespace tarvin {

Result<> CheckLink(const std::filesystem::path& path) {
    if (!IsLink(path) || AreLinksFollowedIn(path.parent_path()))
        return {};
    return Error{Filled(text::fileReason::linkOfOther, {FromPath(path)})};
}

}
