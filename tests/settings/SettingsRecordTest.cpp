#include "settings/SettingsRecord.h"

#include <cstddef>
#include <string>
#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::string_literals;

namespace {

std::string Int(std::uint32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<char>(number >> shift & 0xFF));
    return bytes;
}

std::string Text(KelTextView text) {
    std::string bytes = Int(static_cast<std::uint32_t>(text.size() + 1));
    for (const char16_t unit : text)
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    return bytes + "\0\0"s;
}

std::string Record(const std::string& fields) {
    const auto size = static_cast<std::uint32_t>(fields.size());
    return "\x41\x45\xF7\x05" + Int(size + 4) + Int(size) + fields;
}

DownloadSettings DistinctSettings() {
    DownloadSettings settings;
    settings.port = u"COM3";
    settings.baudRate = u"9600";
    settings.parity = u"Even";
    settings.dataBits = u"7";
    settings.stopBits = u"2";
    settings.flowControl = u"Hardware";
    settings.uploadPath = u"up";
    settings.downloadPath = u"";
    settings.fileExtension = u"\u20AC\xD83D\xDE00";
    settings.transmitDelaySeconds = -2;
    settings.logFile = u"log";
    settings.writeLog = 1;
    settings.characterDelayMilliseconds = 0x01020304;
    settings.lineDelayMilliseconds = 3;
    settings.sendStartCode = 4;
    settings.sendEndCode = 5;
    settings.startCharacter = 0xF1;
    settings.endCharacter = 0xF2;
    settings.commsLogFileName = u"comms";
    settings.ctsFlow = 6;
    settings.dsrFlow = 7;
    settings.reservedInt = 8;
    settings.networkMode = 9;
    settings.serverMode = 10;
    settings.stationName = u"Saw";
    return settings;
}

// The same settings, each field as it is to stand in the file.
std::vector<std::string> DistinctFields() {
    return {Text(u"COM3"),  Text(u"9600"), Text(u"Even"),
            Text(u"7"),     Text(u"2"),    Text(u"Hardware"),
            Text(u"up"),    Text(u""),     "\4\0\0\0\xAC\x20\x3D\xD8\x00\xDE\0\0"s,
            Int(~1U),       Text(u"log"),  Int(1),
            "\4\3\2\1"s,    Int(3),        Int(4),
            Int(5),         "\xF1"s,       "\xF2"s,
            Text(u"comms"), Int(6),        Int(7),
            Int(8),         Int(9),        Int(10),
            Text(u"Saw")};
}

std::string Joined(const std::vector<std::string>& fields, std::size_t count) {
    std::string joined;
    for (std::size_t field = 0; field < count; ++field)
        joined += fields[field];
    return joined;
}

std::size_t TextBytes(const DownloadSettings& settings) {
    std::size_t units = 0;
    for (const KelText* text :
         {&settings.port, &settings.baudRate, &settings.parity, &settings.dataBits, &settings.stopBits,
          &settings.flowControl, &settings.uploadPath, &settings.downloadPath, &settings.fileExtension,
          &settings.logFile, &settings.commsLogFileName, &settings.stationName})
        units += text->size();
    return units * sizeof(char16_t) + settings.extensionFields.size();
}

}

TEST_CASE("the record has each field at its place, and fields of other programs come back unchanged") {
    const auto fields = DistinctFields();
    for (const std::string& extension : {""s, "more\0"s}) {
        DownloadSettings settings = DistinctSettings();
        settings.extensionFields = extension;
        const std::string record = Record(Joined(fields, fields.size()) + extension);
        CHECK(EncodeRecord(settings) == record);
        DownloadSettings decoded;
        CHECK(DecodeRecord(record, decoded) == RecordState::Whole);
        CHECK(decoded == settings);
        CHECK(DecodeRecord(record + "x", decoded) == RecordState::WholeAndMore);
        CHECK(decoded == settings);
    }
}

TEST_CASE("an older record is whole after any number of fields and leaves the others as they were") {
    const auto fields = DistinctFields();
    for (std::size_t count = 0; count < fields.size(); ++count) {
        CAPTURE(count);
        DownloadSettings decoded;
        CHECK(DecodeRecord(Record(Joined(fields, count)), decoded) == RecordState::Whole);
        const std::string merged = EncodeRecord(decoded);
        const std::string constructed = EncodeRecord(DownloadSettings());
        // The fields read, then those of the constructor: nothing in between is shifted.
        const std::string read = Joined(fields, count);
        CHECK(merged.substr(12, read.size()) == read);
        CHECK(constructed.ends_with(std::string_view(merged).substr(12 + read.size())));
    }
}

TEST_CASE("of a record cut at any byte the complete fields are taken") {
    const auto fields = DistinctFields();
    const std::string record = EncodeRecord(DistinctSettings());
    std::size_t complete = 0;
    for (std::size_t length = 0; length < record.size(); ++length) {
        CAPTURE(length);
        while (length >= 12 + Joined(fields, complete + 1).size())
            ++complete;
        DownloadSettings decoded;
        const RecordState state = DecodeRecord(std::string_view(record).substr(0, length), decoded);
        REQUIRE(state == (length < 4 ? RecordState::None : RecordState::Damaged));
        DownloadSettings expected;
        DecodeRecord(Record(Joined(fields, complete)), expected);
        REQUIRE(decoded == expected);
    }
}

TEST_CASE("no corruption of a byte makes a record claim more than the file holds") {
    DownloadSettings settings = DistinctSettings();
    settings.extensionFields = "more";
    const std::string record = EncodeRecord(settings);
    for (std::size_t position = 0; position < record.size(); ++position) {
        for (int value = 0; value < 256; ++value) {
            std::string corrupted = record;
            corrupted[position] = static_cast<char>(value);
            DownloadSettings decoded;
            const RecordState state = DecodeRecord(corrupted, decoded);
            REQUIRE((state == RecordState::None) == (position < 4 && corrupted != record));
            REQUIRE(TextBytes(decoded) <= TextBytes(DownloadSettings()) + record.size());
            // What is called whole says exactly what the file says.
            if (state == RecordState::Whole)
                REQUIRE(EncodeRecord(decoded) == corrupted);
        }
    }
}

TEST_CASE("a record that contradicts itself is read up to the contradiction") {
    struct Case {
        std::string what;
        std::string record;
        KelText port;
        KelText baudRate;
    };
    const std::string port = Text(u"COM3");
    const std::string type = "\x41\x45\xF7\x05";
    const Case cases[] = {
        {"lengths never written", type + Int(0) + Int(0) + port + Text(u"9600"), u"COM3", u"9600"},
        {"first length below 4", type + Int(3) + Int(~0U) + port + Text(u"9600"), u"COM3", u"9600"},
        {"lengths differ", type + Int(18) + Int(10) + port + Text(u"9600"), u"COM3", u"9600"},
        {"lengths beyond the file", type + Int(~0U) + Int(~4U) + port, u"COM3", u"unset"},
        {"text of no unit", Record(port + Int(0) + Text(u"9600")), u"COM3", u"unset"},
        {"text beyond the record", Record(port + Int(0x80000001)) + "\0\0\0\0"s, u"COM3", u"unset"},
        {"text without zero", Record(Int(2) + "C\0O\0"s + Text(u"9600")), u"C", u"9600"},
        {"zero within text", Record(Int(3) + "C\0\0\0\0\0"s + Text(u"9600")), u"C", u"9600"},
    };
    for (const Case& each : cases) {
        CAPTURE(each.what);
        DownloadSettings decoded;
        decoded.baudRate = u"unset";
        CHECK(DecodeRecord(each.record, decoded) == RecordState::Damaged);
        CHECK(ToUtf8(decoded.port) == ToUtf8(each.port));
        CHECK(ToUtf8(decoded.baudRate) == ToUtf8(each.baudRate));
        CHECK(decoded.extensionFields.empty());
    }
}
