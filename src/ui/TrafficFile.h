#pragma once
// Saves the traffic as a text file. User-interface thread.

#include "messages/MessageReport.h"
#include "ui/ModalLoop.h"

#include <optional>
#include <string>

namespace tarvin {

// Asks the user for a file and writes the text to it, in UTF-8. A file of that name is replaced in one step. Returns
// the box that tells a failure.
std::optional<MessageBoxText> SaveTraffic(wxWindow* parent, ModalLoop& loop, const std::string& text);

}
