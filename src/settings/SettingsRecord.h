#pragma once
// The settings as the bytes of a record: a header with type number and lengths, then the fields in a fixed order, all
// little-endian. Any thread.

#include "settings/DownloadSettings.h"

#include <string_view>

namespace tarvin {

enum class RecordState {
    None,         // the bytes begin with no record, or with one of another type
    Whole,        // all fields understood; an older record with fewer fields is whole too
    WholeAndMore, // a whole record, and more bytes after it
    Damaged,      // cut short or inconsistent
};

// Each text ends before its first zero.
std::string EncodeRecord(const DownloadSettings& settings);

// Sets each field that the record at the start of `fileBytes` holds whole: in a damaged record the fields before the
// damage. The other fields keep their values. Without a record nothing changes.
RecordState DecodeRecord(std::string_view fileBytes, DownloadSettings& settings);

}
