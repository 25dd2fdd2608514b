#include "files/NativeFile.h"
#include "settings/SettingsRecord.h"

#include <regex>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;

// A field that is added to the record, and forgotten in the document, fails here.
TEST_CASE("SettingsRecord: the example in docs/formats.md is what the program writes") {
    const auto page =
        ReadWholeFile(std::filesystem::path(TARVIN_SOURCE_FOLDER) / "docs" / "formats.md", 1 << 20).ValueOr("");
    std::string example;
    const std::regex row("    [0-9a-f]{7}0  ((?:[0-9a-f]{2} {1,2})+) *\\|");
    for (std::sregex_iterator found(page.begin(), page.end(), row), end; found != end; ++found) {
        const std::string pairs = (*found)[1];
        for (std::size_t at = pairs.find_first_not_of(' '); at != std::string::npos;
             at = pairs.find_first_not_of(' ', at + 2))
            example.push_back(static_cast<char>(std::stoi(pairs.substr(at, 2), nullptr, 16)));
    }
    DownloadSettings settings;
    settings.port = u"COM1";
    settings.baudRate = u"9600";
    settings.parity = u"None";
    settings.dataBits = u"8";
    settings.stopBits = u"1";
    settings.flowControl = u"Xon/Xoff";
    settings.uploadPath = u"/nc/in";
    settings.downloadPath = u"/nc/out";
    settings.fileExtension = u"nc";
    settings.transmitDelaySeconds = 2;
    CHECK(example == EncodeRecord(settings));
}
