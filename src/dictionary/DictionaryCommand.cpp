#include "dictionary/DictionaryCommand.h"

#include "base/Version.h"
#include "dictionary/DictionaryFile.h"
#include "dictionary/DictionaryXml.h"
#include "files/NativeFile.h"
#include "files/PackedBytes.h"

#include <ostream>

namespace tarvin::dictionary {

namespace {

constexpr char help[] = "Usage: tarvin-dictionary compile [--compress] IN.xml OUT.ary\n"
                        "       tarvin-dictionary export IN.ary OUT.xml\n"
                        "\n"
                        "Makes a dictionary (diction.ary) of its XML form, and XML of a dictionary. The output\n"
                        "is replaced in one step, and only if all of the input is right.\n"
                        "\n"
                        "  --compress  a smaller file, which takes longer to load\n"
                        "  --help      this text\n"
                        "  --version   the version\n"
                        "\n"
                        "Exit code: 0 done, 1 bad input (with file and line) or output, 2 wrong usage.\n";

// XML is wordier than what is made of it.
constexpr std::size_t maximumXmlSize = 8 * maximumDictionarySize;

struct Job {
    std::filesystem::path input;
    std::filesystem::path output;
    std::ostream& errors;

    bool Fail(const std::filesystem::path& file, const std::string& reason) const {
        errors << "tarvin-dictionary: " << ToUtf8(FromPath(file)) << ": " << reason << '\n';
        return false;
    }
    std::optional<std::string> ReadInput(std::size_t maximum) const {
        NativeFile file;
        if (!file.Open(input, NativeFile::Access::Read)) {
            Fail(input, "cannot be read: " + ToUtf8(file.LastError()));
            return std::nullopt;
        }
        auto content = ReadWholeFile(input, maximum);
        if (!content)
            Fail(input, "cannot be read, or is larger than " + std::to_string(maximum >> 20) + " MiB");
        return content;
    }
    bool WriteOutput(std::string_view content) const {
        return ReplaceWholeFile(output, content) || Fail(output, "cannot be written");
    }
};

bool Compile(const Job& job, bool compresses) {
    const auto xml = job.ReadInput(maximumXmlSize);
    if (!xml)
        return false;
    XmlFault fault;
    const auto content = ReadXml(*xml, fault);
    if (!content)
        return job.Fail(job.input, "line " + std::to_string(fault.line) + ": " + fault.message);
    const std::string plain = EncodeDictionary(*content);
    if (plain.size() > maximumDictionarySize)
        return job.Fail(job.input, "has more text than a dictionary can hold");
    return job.WriteOutput(compresses ? Pack(plain) : plain);
}

bool Export(const Job& job) {
    auto bytes = job.ReadInput(maximumDictionarySize);
    if (!bytes)
        return false;
    DictionaryReader reader(std::move(*bytes));
    DictionaryContent content;
    if (!ReadContent(reader, content))
        return job.Fail(job.input, std::string(reader.Fault()));
    if (reader.FurtherObjectCount() > 0)
        return job.Fail(job.input, "holds objects that XML has no place for");
    XmlFault fault;
    const auto xml = WriteXml(content, fault);
    if (!xml)
        return job.Fail(job.input, "gives no right XML: line " + std::to_string(fault.line) + ": " + fault.message);
    return job.WriteOutput(*xml);
}

}

int RunDictionaryCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors) {
    if (arguments.size() == 1 && arguments[0] == u"--help") {
        output << help;
        return 0;
    }
    if (arguments.size() == 1 && arguments[0] == u"--version") {
        output << "tarvin-dictionary " << programVersion << '\n';
        return 0;
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
