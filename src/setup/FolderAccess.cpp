#include "setup/FolderAccess.h"

#include "base/Process.h"
#include "base/SetupMessages.h"
#include "files/FileReplacement.h"
#include "files/NativeFile.h"
#include "setup/ShellCommand.h"

#include <system_error>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

// A drive letter is a root name on Windows alone. Services and users of other sessions have drives of their own.
bool HasMissingDrive(const fs::path& folder) {
    std::error_code ignored;
    const fs::path drive = folder.root_name();
    return drive.native().size() == 2 && !fs::exists(drive / folder.root_directory(), ignored);
}

FolderProblem RightsProblem(KelTextView form, const fs::path& folder, KelTextView reason) {
    return {Filled(form, {FromPath(folder), UserName(), reason}),
            ShellCommand(text::folderCommand::give, FromPath(folder), GroupName())};
}

std::optional<FolderProblem> TryReading(const fs::path& folder) {
    std::error_code error;
    const fs::directory_iterator entries(folder, error);
    if (!error)
        return std::nullopt;
    return RightsProblem(text::folderProblem::notReadable, folder, FromUtf8(error.message()));
}

std::optional<FolderProblem> TryWriting(const fs::path& folder) {
    const fs::path trial = FreshNameFor(folder / "tarvindl");
    NativeFile file;
    const auto opened = file.Open(trial, NativeFile::Access::CreateForOne);
    if (!opened)
        return RightsProblem(text::folderProblem::notWritable, folder, opened.Reason().text);
    file.Delete(trial);
    return std::nullopt;
}

}

std::optional<FolderProblem> TryFolder(const fs::path& folder, FolderUse use) {
    std::error_code error;
    const fs::file_status status = fs::status(folder, error);
    if (status.type() == fs::file_type::not_found) {
        if (HasMissingDrive(folder))
            return FolderProblem{Filled(text::folderProblem::noDrive, {FromPath(folder)}), {}};
        return FolderProblem{Filled(text::folderProblem::missing, {FromPath(folder)}),
                             ShellCommand(text::folderCommand::make, FromPath(folder))};
    }
    if (fs::exists(status) && !fs::is_directory(status))
        return FolderProblem{Filled(text::folderProblem::notFolder, {FromPath(folder)}), {}};
    return use == FolderUse::Write ? TryWriting(folder) : TryReading(folder);
}

std::optional<FolderProblem> TryMakingFolder(const fs::path& folder) {
    fs::path lowest = folder;
    std::error_code error;
    while (fs::status(lowest, error).type() == fs::file_type::not_found && lowest != lowest.parent_path())
        lowest = lowest.parent_path();
    return TryFolder(lowest, FolderUse::Write);
}

KelText DescribeFolderProblems(const KelText& uploadPath, const KelText& downloadPath) {
    KelText problems;
    const auto take = [&](const KelText& folder, FolderUse use) {
        const auto problem = TryFolder(ToPath(folder), use);
        if (!problem || problems.find(problem->text) != KelText::npos)
            return;
        // The words of the system end without a full stop.
        const bool isEnded = problems.empty() || problems.ends_with(u'.');
        problems += (problems.empty() ? u"" : isEnded ? u" " : u". ") + problem->text;
    };
    take(uploadPath, FolderUse::Write);
    take(downloadPath, FolderUse::Read);
    return problems;
}

}
