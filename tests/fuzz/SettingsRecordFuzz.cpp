// Feeds any bytes to the reader of the settings record.

#include "settings/SettingsRecord.h"

#include <cstdlib>

using namespace tarvin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t constructedSize = EncodeRecord(DownloadSettings()).size();
    DownloadSettings settings;
    const RecordState state = DecodeRecord(bytes, settings);
    const std::string written = EncodeRecord(settings);
    DownloadSettings again;
    const bool staysWhole = DecodeRecord(written, again) == RecordState::Whole && again == settings;
    const bool isBounded = written.size() <= constructedSize + size;
    const bool isUntouched = state != RecordState::None || settings == DownloadSettings();
    // A record with all fields is written back byte for byte.
    const bool isSame = state != RecordState::Whole || written.size() != size || written == bytes;
    if (!staysWhole || !isBounded || !isUntouched || !isSame)
        std::abort();
    return 0;
}
