#include "fuzz/FuzzedDisk.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

namespace tarvin::test {

namespace fs = std::filesystem;

void Require(bool condition, const char* promise) {
    if (condition)
        return;
    std::fprintf(stderr, "Broken: %s\n", promise);
    std::abort();
}

FuzzedDisk::FuzzedDisk(fs::path newFolder) : folder(std::move(newFolder)) {
    for (const fs::directory_entry& each : fs::directory_iterator(folder))
        original[each.path().filename().string()] = Read(each.path().filename().string());
    for (const auto& [name, content] : original)
        NoteContent(name, content);
    SetDiskFaults([this](DiskCall call, const char*) { return Answer(call); });
}

FuzzedDisk::~FuzzedDisk() {
    SetDiskFaults({});
}

void FuzzedDisk::AddFault(std::uint8_t call, std::uint8_t skipped, std::uint8_t kindAndCount) {
    constexpr int errors[] = {ENOSPC, EIO, EBUSY, EACCES, EMFILE, ENOENT, EROFS, halfWritten};
    const int count = kindAndCount / 8;
    faults.push_back(
        {static_cast<DiskCall>(call % 8), skipped % 16, count == 31 ? 1000 : count + 1, errors[kindAndCount % 8]});
}

int FuzzedDisk::Answer(DiskCall call) {
    for (Fault& each : faults) {
        if (each.call != call || each.count == 0)
            continue;
        if (each.skipped > 0) {
            --each.skipped;
            continue;
        }
        --each.count;
        return each.error;
    }
    return 0;
}

std::string FuzzedDisk::Read(const std::string& name) const {
    std::ifstream file(folder / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> FuzzedDisk::Copies(const std::string& name) const {
    std::vector<std::string> copies;
    for (const fs::directory_entry& each : fs::directory_iterator(folder)) {
        const std::string file = each.path().filename().string();
        if (file == name || (file.starts_with(name) && (file.ends_with(".part") || file.ends_with(".whole"))))
            copies.push_back(Read(file));
    }
    return copies;
}

bool FuzzedDisk::IsWhole(const std::string& name, const std::string& content) const {
    const auto its = contents.find(name);
    return its != contents.end() && its->second.contains(content);
}

void FuzzedDisk::CheckFiles(bool knowsContents) const {
    for (const auto& [name, content] : original) {
        if (!allowed.contains(name))
            Require(Has(name) && Read(name) == content, "a file that the machine does not store stays as it is");
        else
            Require(Has(name), "a file that is replaced is there at every moment");
    }
    if (!knowsContents)
        return;
    for (const std::string& name : allowed)
        Require(!Has(name) || IsWhole(name, Read(name)), "a file under its name is whole");
    if (!Has("replaced"))
        return;
    constexpr std::size_t ending = std::string_view(".0000-00-00_000000").size();
    for (const fs::directory_entry& each : fs::directory_iterator(folder / "replaced")) {
        const std::string file = each.path().filename().string();
        bool isKnown = false;
        for (const auto& [name, whole] : contents)
            isKnown = isKnown || (file.starts_with(name + ".") && file.size() >= name.size() + ending &&
                                  whole.contains(Read("replaced/" + file)));
        Require(isKnown, "a kept file is one that was replaced");
    }
}

}
