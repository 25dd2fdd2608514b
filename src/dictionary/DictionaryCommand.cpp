#include "dictionary/DictionaryCommand.h"

#include "base/ProgramOutput.h"
#include "base/Version.h"
#include "dictionary/DictionaryFile.h"
#include "dictionary/DictionaryXml.h"
#include "dictionary/PackedBytes.h"
#include "files/NativeFile.h"

#include <ostream>

namespace tarvin::dictionary {

namespace {

constexpr const char* program = "tarvin-dictionary";

constexpr char help[] = "Usage: tarvin-dictionary compile [--compress] IN.xml OUT.ary\n"
                        "       tarvin-dictionary export IN.ary OUT.xml\n"
                        "\n"
                        "Makes a dictionary (diction.ary) of its XML form, and XML of a dictionary. The\n"
                        "output is replaced in one step, and only if all of the input is right.\n"
                        "\n"
                        "  --compress  a smaller file, which takes longer to load\n"
                        "  --help      this text\n"
                        "  --version   the version\n"
                        "\n"
                        "Exit code: 0 done, 1 bad input (with file and line) or output, 2 wrong usage.\n";

// XML is several times as long as the dictionary that is made of it.
constexpr std::size_t maximumXmlSize = 8 * maximumDictionarySize;

struct Job {
    std::filesystem::path input;
    std::filesystem::path output;
    std::ostream& errors;

    // Prints the reason. Gives false, the result of a job that has failed.
    bool Fail(const std::filesystem::path& file, const std::string& reason) const {
        errors << "tarvin-dictionary: " << ToUtf8(FromPath(file)) << ": " << reason << '\n';
        return false;
    }
    bool WriteOutput(std::string_view content) const {
        return ReplaceWholeFile(output, content) || Fail(output, "cannot be written");
    }
};

bool Compile(const Job& job, bool compresses) {
    const auto xml = ReadWholeFile(job.input, maximumXmlSize);
    if (!xml)
        return job.Fail(job.input, "cannot be read: " + ToUtf8(xml.Reason().text));
    const auto content = ReadXml(*xml);
    if (!content)
        return job.Fail(job.input, ToUtf8(content.Reason().text));
    const std::string plain = EncodeDictionary(*content);
    if (plain.size() > maximumDictionarySize)
        return job.Fail(job.input, "has more text than a dictionary can hold");
    return job.WriteOutput(compresses ? Pack(plain) : plain);
}

bool Export(const Job& job) {
    auto bytes = ReadWholeFile(job.input, maximumDictionarySize);
    if (!bytes)
        return job.Fail(job.input, "cannot be read: " + ToUtf8(bytes.Reason().text));
    DictionaryReader reader;
    if (const auto opened = reader.Open(std::move(*bytes)); !opened)
        return job.Fail(job.input, ToUtf8(opened.Reason().text));
    if (reader.FurtherObjectCount() > 0)
        return job.Fail(job.input, "holds objects that XML has no place for");
    const auto xml = WriteXml(ReadContent(reader));
    if (!xml)
        return job.Fail(job.input, "gives no right XML: " + ToUtf8(xml.Reason().text));
    return job.WriteOutput(*xml);
}

}

int RunDictionaryCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors) {
    if (arguments.size() == 1 && arguments[0] == u"--help") {
        output << help;
        return EndOutput(output, errors, program, 0);
    }
    if (arguments.size() == 1 && arguments[0] == u"--version") {
        output << program << ' ' << programVersion << '\n';
        return EndOutput(output, errors, program, 0);
    }
    const bool compiles = !arguments.empty() && arguments[0] == u"compile";
    const bool compresses = compiles && arguments.size() > 1 && arguments[1] == u"--compress";
    const auto files = arguments.subspan(arguments.empty() ? 0 : compresses ? 2 : 1);
    if (files.size() != 2 || (!compiles && arguments[0] != u"export")) {
        errors << help;
        return 2;
    }
    const Job job{ToPath(files[0]), ToPath(files[1]), errors};
    return (compiles ? Compile(job, compresses) : Export(job)) ? 0 : 1;
}

}
