#pragma once
// The messages that the user does not want to see again, kept between runs as a text file with one number on each line.
// Knows nothing of the messages. Lookups come from any thread; Read and Add belong to one.

#include "base/KelText.h"

#include <mutex>
#include <set>

namespace tarvin {

class SuppressedMessages {
public:
    enum class Content { Sound, Damaged, Unreadable };

    // Nothing is read yet.
    explicit SuppressedMessages(std::filesystem::path listFile) : file(std::move(listFile)) {}

    // Adds what the file holds to what is known. Every whole line that is a number counts, whatever stands around it,
    // up to the first MiB of the file. A missing file is sound.
    Content Read();

    bool Contains(std::int32_t id) const;

    // Suppressed from now on; false if the next run will not know it. What another program has added to the file since
    // is kept, and a file that cannot be read is left as it is.
    bool Add(std::int32_t id);

private:
    const std::filesystem::path file;
    mutable std::mutex mutex;
    std::set<std::int32_t> ids;
};

}
