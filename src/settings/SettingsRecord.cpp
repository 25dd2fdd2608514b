#include "settings/SettingsRecord.h"

#include "files/ObjectStream.h"
#include "settings/SettingsFields.h"

#include <algorithm>
#include <limits>

namespace tarvin {

namespace {

constexpr std::uint32_t recordType = 100091201;
constexpr std::uint32_t numberSize = 4;

template <class Settings, class Visitor>
void VisitFields(Settings& settings, Visitor& visit) {
    ForEachField([&](auto field) { visit(settings.*field); });
}

class FieldWriter {
public:
    void operator()(std::uint8_t field) { writer.Byte(field); }
    void operator()(std::int32_t field) { writer.Integer(field); }
    void operator()(KelTextView field) {
        field = field.substr(0, field.find(u'\0'));
        writer.Number(static_cast<std::uint32_t>(field.size() + 1));
        for (const char16_t unit : field)
            writer.Unit(unit);
        writer.Unit(0);
    }

    const std::string& Bytes() const { return writer.Written(); }

private:
    ObjectWriter writer;
};

// Reads fields until the bytes hold no further whole one. Allocates no more memory than the bytes it got.
class FieldReader {
public:
    explicit FieldReader(std::string_view fieldBytes) : reader(fieldBytes) {}

    void operator()(std::uint8_t& field) {
        if (HasNext(sizeof field))
            field = reader.Byte();
    }
    void operator()(std::int32_t& field) {
        if (HasNext(numberSize))
            field = reader.Integer();
    }
    void operator()(KelText& field);

    bool IsDamaged() const { return isDamaged; }
    // The bytes after the fields that were read.
    std::string_view Rest() const { return reader.Rest(); }

private:
    // A record may end before a field, but not within one.
    bool HasNext(std::size_t byteCount) {
        ended = ended || reader.Rest().size() < byteCount;
        isDamaged = isDamaged || (ended && !reader.Rest().empty());
        return !ended;
    }

    ObjectReader reader;
    bool ended = false;
    bool isDamaged = false;
};

void FieldReader::operator()(KelText& field) {
    if (!HasNext(numberSize))
        return;
    // A count that the bytes left cannot hold gives 0, like an empty text, which has at least its zero.
    const std::uint32_t unitCount = reader.Count(sizeof(char16_t), std::numeric_limits<std::uint32_t>::max());
    if (unitCount == 0) {
        ended = true;
        isDamaged = true;
        return;
    }
    KelText units;
    units.reserve(unitCount);
    for (std::uint32_t unit = 0; unit < unitCount; ++unit)
        units.push_back(reader.Unit());
    // The only zero of a text is its last unit. In a text that breaks this rule the count still tells where the next
    // field begins, so reading goes on.
    const std::size_t length = std::min<std::size_t>(units.find(u'\0'), unitCount - 1);
    isDamaged = isDamaged || length != unitCount - 1 || units.back() != u'\0';
    field = units.substr(0, length);
}

}

std::string EncodeRecord(const DownloadSettings& settings) {
    FieldWriter fields;
    VisitFields(settings, fields);
    const auto fieldsSize = static_cast<std::uint32_t>(fields.Bytes().size() + settings.extensionFields.size());
    ObjectWriter record;
    // Each length counts the bytes after it, up to the end of the record.
    record.Number(recordType);
    record.Number(fieldsSize + numberSize);
    record.Number(fieldsSize);
    record.Bytes(fields.Bytes());
    record.Bytes(settings.extensionFields);
    return record.Written();
}

RecordState DecodeRecord(std::string_view fileBytes, DownloadSettings& settings) {
    ObjectReader header(fileBytes);
    if (header.Number() != recordType)
        return RecordState::None;
    const std::uint32_t outerLength = header.Number();
    const std::uint32_t fieldsSize = header.Number();
    if (header.HasFailed())
        return RecordState::Damaged;
    const std::string_view body = header.Rest();
    // The fields tell their own sizes. If the lengths contradict each other, the fields are read up to the end of the
    // file. Both lengths are zero if the writer was stopped before it set them.
    const bool lengthsAgree = std::uint64_t{outerLength} == std::uint64_t{fieldsSize} + numberSize;
    const bool isCut = !lengthsAgree || fieldsSize > body.size();
    FieldReader reader(isCut ? body : body.substr(0, fieldsSize));
    VisitFields(settings, reader);
    if (isCut || reader.IsDamaged())
        return RecordState::Damaged;
    settings.extensionFields = reader.Rest();
    return fieldsSize < body.size() ? RecordState::WholeAndMore : RecordState::Whole;
}

}
