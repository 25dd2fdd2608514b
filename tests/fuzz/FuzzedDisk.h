#pragma once
// The disk under a fuzzed protocol: calls that fail as the input says, and what must be true of the NC folder whatever
// happens.

#include "harness/DiskFaultsPosix.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::test {

// Ends the program, so that the fuzzer keeps the input.
void Require(bool condition, const char* promise);

class FuzzedDisk {
public:
    // Takes the folder as it is. Replaces the faults of the program until its destruction.
    explicit FuzzedDisk(std::filesystem::path folder);
    ~FuzzedDisk();
    FuzzedDisk(const FuzzedDisk&) = delete;
    FuzzedDisk& operator=(const FuzzedDisk&) = delete;

    // After `skipped` more calls of its kind, `count` calls fail. The bytes are any.
    void AddFault(std::uint8_t call, std::uint8_t skipped, std::uint8_t kindAndCount);
    void ClearFaults() { faults.clear(); }
    bool HasFaults() const { return !faults.empty(); }

    // The machine may store this file from now on.
    void Allow(const std::string& name) { allowed.insert(name); }
    // This content was wholly received for the file.
    void NoteContent(const std::string& name, const std::string& content) { contents[name].insert(content); }

    // No other file has changed. If all that was received is known, each file under an allowed name, or kept in its
    // place, is one that was whole.
    void CheckFiles(bool knowsContents = true) const;
    std::string Read(const std::string& name) const;
    bool Has(const std::string& name) const { return std::filesystem::exists(folder / name); }
    // The files that an upload under this name may have left: its ".part", wholes without the name, and itself.
    std::vector<std::string> Copies(const std::string& name) const;

private:
    struct Fault {
        DiskCall call;
        int skipped;
        int count;
        int error;
    };

    int Answer(DiskCall call);
    bool IsWhole(const std::string& name, const std::string& content) const;

    const std::filesystem::path folder;
    std::vector<Fault> faults;
    std::map<std::string, std::string> original;
    std::map<std::string, std::set<std::string>> contents;
    std::set<std::string> allowed;
};

}
