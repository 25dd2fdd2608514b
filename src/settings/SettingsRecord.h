#pragma once
// The settings as one stored object: a header with type number and lengths, then the fields in a fixed order, all
// little-endian. Knows nothing of files. Any thread.

#include "settings/DownloadSettings.h"

#include <string_view>

namespace tarvin {

enum class RecordState {
    None,         // something else, or an object of another type
    Whole,        // understood; an older record with fewer fields is whole too
    WholeAndMore, // a whole record with bytes behind its end
    Damaged,      // cut short or inconsistent
};

// Texts end at their first zero, if they hold one.
std::string EncodeRecord(const DownloadSettings& settings);

// Takes what is whole from the record at the beginning of `fileBytes`; the other fields keep the values that they have.
// Of a damaged record that is what stands before the damage. Without a record nothing is changed.
RecordState DecodeRecord(std::string_view fileBytes, DownloadSettings& settings);

}
