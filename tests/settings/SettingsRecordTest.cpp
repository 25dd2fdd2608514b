#include "settings/SettingsRecord.h"

#include <cstddef>
#include <string>
#include <tuple>
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

// The bytes of each field. Every value is different, so that a field in a wrong place shows.
const std::vector<std::string> distinctFields = {
    Text(u"COM3"),   Text(u"9600"), Text(u"Even"),
    Text(u"7"),      Text(u"2"),    Text(u"Hardware"),
    Text(u"up"),     Text(u""),     "\4\0\0\0\xAC\x20\x3D\xD8\x00\xDE\0\0"s,
    Int(~1U),        Text(u"log"),  Int(1),
    "\4\3\2\1"s,     Int(3),        Int(4),
    Int(5),          "\xF1"s,       "\xF2"s,
    Text(u"comms"),  Int(6),        Int(7),
    Int(8),          Int(9),        Int(10),
    Text(u"Saw"),    Int(2),        Int(11),
    Int(12),         Int(13),       Int(14),
    Int(15),         Int(16),       Int(17),
    Text(u"French"), Int(18)};

std::string FirstFields(std::size_t count) {
    std::string fields;
    for (std::size_t field = 0; field < count; ++field)
        fields += distinctFields[field];
    return fields;
}

}

TEST_CASE("SettingsRecord: each field has its place, and fields of newer programs come back unchanged") {
    for (const std::string& extension : {""s, "more\0"s}) {
        const std::string record = Record(FirstFields(distinctFields.size()) + extension);
        DownloadSettings read;
        CHECK(DecodeRecord(record, read) == RecordState::Whole);
        const auto serial =
            std::tie(read.port, read.baudRate, read.parity, read.dataBits, read.stopBits, read.flowControl);
        CHECK((serial == std::tuple(u"COM3", u"9600", u"Even", u"7", u"2", u"Hardware")));
        const auto files = std::tie(read.uploadPath, read.downloadPath, read.fileExtension, read.logFile,
                                    read.commsLogFileName, read.stationName);
        CHECK((files == std::tuple(u"up", u"", u"\u20AC\xD83D\xDE00", u"log", u"comms", u"Saw")));
        const auto numbers = std::tie(
            read.transmitDelaySeconds, read.writeLog, read.characterDelayMilliseconds, read.lineDelayMilliseconds,
            read.sendStartCode, read.sendEndCode, read.startCharacter, read.endCharacter, read.ctsFlow, read.dsrFlow,
            read.reservedInt, read.networkMode, read.serverMode, read.incomingCheck, read.replacedFilesKept,
            read.sendsChecksums, read.controllerKind, read.silenceSeconds, read.attentionMinutes, read.callsWithSound,
            read.historyYears, read.newFilesPerHour);
        CHECK(read.language == u"French");
        CHECK((numbers ==
               std::tuple(-2, 1, 0x01020304, 3, 4, 5, 0xF1, 0xF2, 6, 7, 8, 9, 10, 2, 11, 12, 13, 14, 15, 16, 17, 18)));
        CHECK(read.extensionFields == extension);
        CHECK(EncodeRecord(read) == record);
        CHECK(DecodeRecord(record + "x", read) == RecordState::WholeAndMore);
        CHECK(EncodeRecord(read) == record);
    }
}

TEST_CASE("SettingsRecord: an older record is whole after any number of fields and leaves the others unchanged") {
    const std::string constructed = EncodeRecord(DownloadSettings());
    for (std::size_t count = 0; count < distinctFields.size(); ++count) {
        CAPTURE(count);
        const std::string fields = FirstFields(count);
        DownloadSettings decoded;
        CHECK(DecodeRecord(Record(fields), decoded) == RecordState::Whole);
        // First the fields that were read, then the constructor's, with nothing shifted.
        const std::string merged = EncodeRecord(decoded);
        CHECK(merged.substr(12, fields.size()) == fields);
        CHECK(constructed.ends_with(merged.substr(12 + fields.size())));
    }
}

TEST_CASE("SettingsRecord: a record cut at any byte gives its complete fields") {
    const std::string record = Record(FirstFields(distinctFields.size()));
    std::size_t complete = 0;
    for (std::size_t length = 0; length < record.size(); ++length) {
        CAPTURE(length);
        while (length >= 12 + FirstFields(complete + 1).size())
            ++complete;
        DownloadSettings decoded;
        const RecordState state = DecodeRecord(std::string_view(record).substr(0, length), decoded);
        REQUIRE(state == (length < 4 ? RecordState::None : RecordState::Damaged));
        DownloadSettings expected;
        DecodeRecord(Record(FirstFields(complete)), expected);
        REQUIRE(decoded == expected);
    }
}

TEST_CASE("SettingsRecord: no corrupt byte makes a record larger than its file") {
    const std::string record = Record(FirstFields(distinctFields.size()) + "more");
    for (std::size_t position = 0; position < record.size(); ++position) {
        for (int value = 0; value < 256; ++value) {
            std::string corrupted = record;
            corrupted[position] = static_cast<char>(value);
            DownloadSettings decoded;
            const RecordState state = DecodeRecord(corrupted, decoded);
            REQUIRE((state == RecordState::None) == (position < 4 && corrupted != record));
            REQUIRE(EncodeRecord(decoded).size() <= EncodeRecord(DownloadSettings()).size() + record.size());
            // A record that counts as whole says exactly what the file says.
            if (state == RecordState::Whole)
                REQUIRE(EncodeRecord(decoded) == corrupted);
        }
    }
}

TEST_CASE("SettingsRecord: a record that contradicts itself is read up to the contradiction") {
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
