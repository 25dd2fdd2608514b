#pragma once
// The SVG files of src/ui/pictures, compiled in. Any thread.

#include <cstddef>
#include <string_view>

namespace tarvin {

struct PictureFile {
    std::string_view name;
    std::string_view svg;
};

extern const PictureFile pictureFiles[];
extern const std::size_t pictureFileCount;

}
