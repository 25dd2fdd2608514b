// Feeds any bytes to the reader of a published status.

#include "publish/PublishedStatus.h"
#include "publish/StatusFile.h"

#include <cstdlib>

using namespace tarvin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Present present = {Clock::TimePoint(std::chrono::hours(100)), SystemTime(std::chrono::hours(24 * 365 * 50))};
    const auto status = FromJson({reinterpret_cast<const char*>(data), size}, present);
    if (!status)
        return 0;
    // What has been read can be written, and then stays the same.
    const std::string written = ToJson(*status, present);
    const auto again = FromJson(written, present);
    if (written.size() > longestStatusFile || !again || ToJson(*again, present) != written)
        std::abort();
    return 0;
}
