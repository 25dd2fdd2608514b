#pragma once
// The system's dialogs in which the user picks a file: to send, to receive, or for the comms log. User-interface
// thread. Each returns when the user has answered: none if the user cancels.

#include "settings/DownloadSettings.h"
#include "ui/ModalLoop.h"

#include <filesystem>
#include <optional>

namespace tarvin {

// The filters of a file dialog for NC files, in the form of wxWidgets.
wxString NcFileFilters(const KelText& extension);

// The dialog offers the name of `currentFile`, the file of the last transfer.
std::optional<std::filesystem::path> AskForNcFileToSend(wxWindow* parent, ModalLoop& loop,
                                                        const DownloadSettings& settings, const KelText& currentFile);
std::optional<std::filesystem::path>
AskForNcFileToReceive(wxWindow* parent, ModalLoop& loop, const DownloadSettings& settings, const KelText& currentFile);
std::optional<std::filesystem::path> AskForCommsLog(wxWindow* parent, ModalLoop& loop,
                                                    const DownloadSettings& settings);

}
