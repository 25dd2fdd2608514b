#pragma once
// Shortens a status that is too long for its line. Any thread.

#include "ui/Wx.h"

#include <functional>

namespace tarvin {

// The text with the middle of its folders left out, as little as needed for `fits` to say yes. The names of files,
// their numbers and all words stay. If that is not enough, every folder is as short as it can be. `fits` must not say
// no to a text that is shorter than one it has taken.
wxString ShortenStatus(const wxString& text, const std::function<bool(const wxString& text)>& fits);

}
