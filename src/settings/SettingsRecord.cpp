#include "settings/SettingsRecord.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr std::uint32_t recordType = 100091201;
constexpr std::size_t numberSize = 4;
constexpr std::size_t headerSize = 3 * numberSize;

// The one place that knows the order of the fields. A new field goes to the end.
template <class Settings, class Visitor>
void VisitFields(Settings& settings, Visitor&& visit) {
    visit(settings.port);
    visit(settings.baudRate);
    visit(settings.parity);
    visit(settings.dataBits);
    visit(settings.stopBits);
    visit(settings.flowControl);
    visit(settings.uploadPath);
    visit(settings.downloadPath);
    visit(settings.fileExtension);
    visit(settings.transmitDelaySeconds);
    visit(settings.logFile);
    visit(settings.writeLog);
    visit(settings.characterDelayMilliseconds);
    visit(settings.lineDelayMilliseconds);
    visit(settings.sendStartCode);
    visit(settings.sendEndCode);
    visit(settings.startCharacter);
    visit(settings.endCharacter);
    visit(settings.commsLogFileName);
    visit(settings.ctsFlow);
    visit(settings.dsrFlow);
    visit(settings.reservedInt);
    visit(settings.networkMode);
    visit(settings.serverMode);
    visit(settings.stationName);
}

void AppendLittleEndian(std::string& bytes, std::uint32_t number, std::size_t byteCount) {
    for (; byteCount > 0; --byteCount, number >>= 8)
        bytes.push_back(static_cast<char>(number & 0xFF));
}

std::uint32_t LittleEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        number = number << 8 | static_cast<unsigned char>(*byte);
    return number;
}

class FieldWriter {
public:
    void operator()(std::uint8_t field) { AppendLittleEndian(bytes, field, 1); }
    void operator()(std::int32_t field) { AppendLittleEndian(bytes, static_cast<std::uint32_t>(field), numberSize); }
    void operator()(KelTextView field) {
        field = field.substr(0, field.find(u'\0'));
        AppendLittleEndian(bytes, static_cast<std::uint32_t>(field.size() + 1), numberSize);
        for (const char16_t unit : field)
            AppendLittleEndian(bytes, unit, sizeof unit);
        AppendLittleEndian(bytes, 0, sizeof(char16_t));
    }

    const std::string& Bytes() const { return bytes; }

private:
    std::string bytes;
};

// Reads fields until one is not there whole. What it allocates is never more than the bytes it was given.
class FieldReader {
public:
    explicit FieldReader(std::string_view fieldBytes) : rest(fieldBytes) {}

    void operator()(std::uint8_t& field) {
        if (HasNext(sizeof field))
            field = static_cast<std::uint8_t>(LittleEndian(Take(sizeof field)));
    }
    void operator()(std::int32_t& field) {
        if (HasNext(numberSize))
            field = static_cast<std::int32_t>(LittleEndian(Take(numberSize)));
    }
    void operator()(KelText& field);

    bool IsDamaged() const { return isDamaged; }
    // The bytes behind the fields read.
    std::string_view Rest() const { return rest; }

private:
    // A record may end before any field, but not within one.
    bool HasNext(std::size_t byteCount) {
        ended = ended || rest.size() < byteCount;
        isDamaged = isDamaged || (ended && !rest.empty());
        return !ended;
    }
    std::string_view Take(std::size_t byteCount) {
        const std::string_view taken = rest.substr(0, byteCount);
        rest.remove_prefix(byteCount);
        return taken;
    }

    std::string_view rest;
    bool ended = false;
    bool isDamaged = false;
};

void FieldReader::operator()(KelText& field) {
    if (!HasNext(numberSize))
        return;
    const std::size_t unitCount = LittleEndian(rest.substr(0, numberSize));
    if (unitCount == 0 || unitCount > (rest.size() - numberSize) / sizeof(char16_t)) {
        ended = true;
        isDamaged = true;
        return;
    }
    Take(numberSize);
    KelText units;
    units.reserve(unitCount);
    for (std::size_t unit = 0; unit < unitCount; ++unit)
        units.push_back(static_cast<char16_t>(LittleEndian(Take(sizeof(char16_t)))));
    // The zero stands at the end and nowhere else. Where it does not, the count still tells where the next field
    // begins.
    const std::size_t length = std::min(units.find(u'\0'), unitCount - 1);
    isDamaged = isDamaged || length != unitCount - 1 || units.back() != u'\0';
    field = units.substr(0, length);
}

}

std::string EncodeRecord(const DownloadSettings& settings) {
    FieldWriter writer;
    VisitFields(settings, writer);
    const std::size_t fieldsSize = writer.Bytes().size() + settings.extensionFields.size();
    std::string record;
    record.reserve(headerSize + fieldsSize);
    // Each length counts what follows it, up to the record's end.
    AppendLittleEndian(record, recordType, numberSize);
    AppendLittleEndian(record, static_cast<std::uint32_t>(fieldsSize + numberSize), numberSize);
    AppendLittleEndian(record, static_cast<std::uint32_t>(fieldsSize), numberSize);
    return record + writer.Bytes() + settings.extensionFields;
}

RecordState DecodeRecord(std::string_view fileBytes, DownloadSettings& settings) {
    if (fileBytes.size() < numberSize || LittleEndian(fileBytes.substr(0, numberSize)) != recordType)
        return RecordState::None;
    if (fileBytes.size() < headerSize)
        return RecordState::Damaged;
    const std::size_t outerLength = LittleEndian(fileBytes.substr(numberSize, numberSize));
    const std::size_t fieldsSize = LittleEndian(fileBytes.substr(2 * numberSize, numberSize));
    const std::string_view body = fileBytes.substr(headerSize);
    // Lengths that contradict one another (both are zero when a writer died before it knew them) are not believed: the
    // fields are then read for as long as the file has any.
    const bool lengthsAgree = outerLength == fieldsSize + numberSize;
    const bool isCut = !lengthsAgree || fieldsSize > body.size();
    FieldReader reader(isCut ? body : body.substr(0, fieldsSize));
    VisitFields(settings, reader);
    if (isCut || reader.IsDamaged())
        return RecordState::Damaged;
    settings.extensionFields = reader.Rest();
    return fieldsSize < body.size() ? RecordState::WholeAndMore : RecordState::Whole;
}

}
