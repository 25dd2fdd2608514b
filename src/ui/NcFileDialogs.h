#pragma once
// The system's dialogs in which the user picks a file: to send, to receive into, to log the line in. Know nothing of
// what is done with it. User-interface thread; each waits for the user.

#include "settings/DownloadSettings.h"
#include "ui/ModalLoop.h"

#include <filesystem>
#include <optional>

namespace tarvin {

// The file dialogs' list of filters for NC files, as wxWidgets wants it.
wxString NcFileFilters(const KelText& extension);

// `currentFile` is the file that was last on its way; it is offered by its name. None if the user cancels.
std::optional<std::filesystem::path> AskForNcFileToSend(wxWindow* parent, ModalLoop& loop,
                                                        const DownloadSettings& settings, const KelText& currentFile);
std::optional<std::filesystem::path>
AskForNcFileToReceive(wxWindow* parent, ModalLoop& loop, const DownloadSettings& settings, const KelText& currentFile);
std::optional<std::filesystem::path> AskForCommsLog(wxWindow* parent, ModalLoop& loop,
                                                    const DownloadSettings& settings);

}
