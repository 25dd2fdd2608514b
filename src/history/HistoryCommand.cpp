#include "history/HistoryCommand.h"

#include "base/ProgramOutput.h"
#include "base/Version.h"
#include "files/Installation.h"
#include "history/HistoryDatabase.h"
#include "history/HistoryOptions.h"
#include "history/HistoryOutput.h"

#include <algorithm>
#include <ostream>

namespace tarvin {

namespace {

constexpr const char* program = "tarvin-history";

constexpr char help[] = "Usage: tarvin-history [OPTION...]\n"
                        "\n"
                        "Lists the transfers of all machines of the installation, the newest first.\n"
                        "\n"
                        "  --machine NAME    of this machine only\n"
                        "  --number N        of this number only; * stands for any characters, ? for one\n"
                        "  --days N          of the last N days, today included\n"
                        "  --from DATE       from this day on, such as 2026-11-22\n"
                        "  --to DATE         up to this day, the day included\n"
                        "  --outcome WHAT    completed, failed, cancelled or refused ones only\n"
                        "  --totals          numbers of transfers for each machine and day\n"
                        "  --csv             for a spreadsheet: comma-separated values, UTF-8\n"
                        "  --json            for other programs\n"
                        "  --database FILE   another database than the installation's history.db\n"
                        "  --help            this text\n"
                        "  --version         the version\n"
                        "\n"
                        "Times are local ones. Exit code: 0 done, 1 the history cannot be read or the\n"
                        "output cannot be written, 2 wrong usage.\n";

int Fail(std::ostream& errors, const KelText& reason, int exitCode) {
    errors << "tarvin-history: " << ToUtf8(reason) << ".\n";
    if (exitCode == 2)
        errors << "tarvin-history --help tells the options.\n";
    return exitCode;
}

int Finish(std::ostream& output, std::ostream& errors) {
    return EndOutput(output, errors, program, 0);
}

}

int RunHistoryCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors) {
    const auto isGiven = [&](KelTextView option) {
        return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
    };
    if (isGiven(u"--help")) {
        output << help;
        return Finish(output, errors);
    }
    if (isGiven(u"--version")) {
        output << "tarvin-history " << programVersion << '\n';
        return Finish(output, errors);
    }
    auto request = ReadHistoryOptions(arguments, std::chrono::system_clock::now());
    if (!request)
        return Fail(errors, request.Reason().text, 2);
    if (request->database.empty()) {
        const auto installation = FindInstallation();
        if (!installation)
            return Fail(errors, installation.Reason().text, 1);
        request->database = HistoryFile(*installation);
    }
    const auto rows = ReadHistory(request->database, request->filter);
    if (!rows)
        return Fail(errors, FromPath(request->database) + u": " + rows.Reason().text, 1);
    (request->wantsTotals ? WriteTotals : WriteHistory)(output, *rows, request->form);
    return Finish(output, errors);
}

}
