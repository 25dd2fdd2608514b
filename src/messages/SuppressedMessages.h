#pragma once
// The numbers of the messages that the user has suppressed, kept between runs in a text file with one number on each
// line. Contains may be called by any thread; Read, Add and Clear belong to one thread.

#include "base/KelText.h"
#include "base/Mutex.h"

#include <set>
#include <utility>

namespace tarvin {

class SuppressedMessages {
public:
    enum class Content { Sound, Damaged, Unreadable };

    // Does not read the file.
    explicit SuppressedMessages(std::filesystem::path file) : file(std::move(file)) {}

    // Adds the numbers in the file to those already known: each whole line that is a number, whatever the other lines
    // are, within the first MiB. A missing file is sound.
    Content Read() EXCLUDES(mutex);

    bool Contains(std::int32_t id) const EXCLUDES(mutex);

    // Suppresses the message at once. Keeps the numbers that another program has added to the file. False if the number
    // is not in the file, so that the next run will not know it; a file that cannot be read is left as it is.
    bool Add(std::int32_t id) EXCLUDES(mutex);

    // Suppresses no message any more, at once. False if the numbers are still in the file, so that the next run will
    // know them.
    bool Clear() EXCLUDES(mutex);

private:
    const std::filesystem::path file;
    mutable Mutex mutex;
    std::set<std::int32_t> ids GUARDED_BY(mutex);
};

}
