#pragma once
// The words and limits of the published form that its writer and its reader share.

#include "publish/PublishedStatus.h"

#include <utility>

namespace tarvin {

inline constexpr char16_t statusFormName[] = u"TarvinDL status";
inline constexpr char16_t serviceWord[] = u"service";
inline constexpr char16_t windowWord[] = u"window";

// In UTF-16 units. Long enough for every path of POSIX.
inline constexpr std::size_t longestStatusText = 4096;
// The engine keeps 20, and those failures that no user has seen.
inline constexpr std::size_t mostPublishedRecords = 100;

inline constexpr std::pair<const char*, KelText DownloadSettings::*> settingsTexts[] = {
    {"port", &DownloadSettings::port},
    {"baudrate", &DownloadSettings::baudRate},
    {"parity", &DownloadSettings::parity},
    {"databits", &DownloadSettings::dataBits},
    {"stopbits", &DownloadSettings::stopBits},
    {"flow_control", &DownloadSettings::flowControl},
    {"upload_path", &DownloadSettings::uploadPath},
    {"download_path", &DownloadSettings::downloadPath},
    {"file_extension", &DownloadSettings::fileExtension}};

inline constexpr std::pair<const char*, std::int64_t TransferRecord::*> recordNumbers[] = {
    {"bytes", &TransferRecord::byteCount},           {"bytes_total", &TransferRecord::bytesTotal},
    {"lines", &TransferRecord::lineCount},           {"lines_total", &TransferRecord::linesTotal},
    {"repeats", &TransferRecord::repeats},           {"damaged", &TransferRecord::damaged},
    {"driver_errors", &TransferRecord::driverErrors}};

}
