#include "campaign/NcFiles.h"

#include "campaign/Random.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tarvin::campaign {

namespace {

constexpr std::uint32_t firstNumber = 4700;
constexpr std::size_t fewestLines = 10;
constexpr std::size_t furtherLines = 20;

std::string Millimetres(Random& random) {
    return std::to_string(random.Below(900)) + "." + std::to_string(100 + random.Below(900));
}

std::string NextLine(Random& random, std::size_t index) {
    const std::string comments[] = {"(OUTER CONTOUR)", "(LEAD IN 2.5)", "(PLASMA 45 A)", "(CORNER, SLOW DOWN)"};
    const std::string block = "N" + std::to_string(10 * (index + 1));
    switch (random.Below(6)) {
    case 0:
        return random.OneOf(comments);
    case 1:
        return "M0" + std::to_string(3 + random.Below(3));
    case 2:
        return block + " G02 X" + Millimetres(random) + " Y" + Millimetres(random) + " I" + Millimetres(random) + " J" +
               Millimetres(random) + " F1200";
    default:
        return block + " G01 X" + Millimetres(random) + " Y" + Millimetres(random);
    }
}

// As programs are: short and long lines, and now and then the same line twice in a row.
std::vector<std::string> MakeLines(Random random) {
    std::vector<std::string> lines;
    const std::size_t count = fewestLines + random.Below(furtherLines);
    for (std::size_t index = 0; index < count; ++index)
        lines.push_back(index > 0 && random.Below(12) == 0 ? lines.back() : NextLine(random, index));
    return lines;
}

bool IsBesideTransfers(const std::string& name) {
    return name.ends_with(".part") || name.ends_with(".whole");
}

}

NcFiles::NcFiles(std::filesystem::path folder, std::uint32_t seed) : folder(std::move(folder)), seed(seed) {
    for (std::uint32_t index = 0; index < fileCount; ++index) {
        older[NameOf(index)] = Content(OlderLines(index));
        WriteOlder(NameOf(index), older[NameOf(index)]);
    }
}

std::string NcFiles::NumberOf(std::uint32_t transfer) {
    return "0" + std::to_string(firstNumber + transfer % fileCount);
}

std::string NcFiles::NameOf(std::uint32_t transfer) {
    return std::to_string(firstNumber + transfer % fileCount) + ".nc";
}

std::vector<std::string> NcFiles::NewLines(std::uint32_t transfer) const {
    return MakeLines(Random({seed, transfer, 3}));
}

std::vector<std::string> NcFiles::OlderLines(std::uint32_t transfer) const {
    return MakeLines(Random({seed, transfer % fileCount, 4}));
}

std::string NcFiles::Content(const std::vector<std::string>& lines) {
    std::string content;
    for (const std::string& line : lines)
        content += line + "\r\n";
    return content;
}

std::vector<std::string> NcFiles::Lines(const std::string& content) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < content.size();) {
        const std::size_t end = std::min(content.find('\n', begin), content.size());
        std::string line = content.substr(begin, end - begin);
        if (line.ends_with('\r'))
            line.pop_back();
        lines.push_back(std::move(line));
        begin = end + 1;
    }
    return lines;
}

std::optional<std::string> NcFiles::Read(const std::string& name) const {
    std::ifstream file(folder / name, std::ios::binary);
    if (!file.is_open())
        return {};
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void NcFiles::Write(const std::string& name, const std::string& content) const {
    std::ofstream file(folder / name, std::ios::binary | std::ios::trunc);
    if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
        throw std::runtime_error((folder / name).string() + " cannot be written");
}

// An hour old: a program may be careful with files that are being changed right now.
void NcFiles::WriteOlder(const std::string& name, const std::string& content) const {
    Write(name, content);
    std::filesystem::last_write_time(folder / name,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
}

std::map<std::string, std::string> NcFiles::Found() const {
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && !IsBesideTransfers(name))
            found[name] = Read(name).value_or("");
    }
    return found;
}

NcFiles::Changes NcFiles::ChangesBeside(const std::string& name) const {
    Changes changes;
    auto found = Found();
    for (const auto& [each, content] : older) {
        if (each != name && (!found.contains(each) || found[each] != content))
            changes.overwritten.push_back(each);
    }
    for (const auto& [each, content] : found) {
        if (!older.contains(each))
            changes.created.push_back(each);
    }
    return changes;
}

void NcFiles::Restore() const {
    const auto found = Found();
    for (const auto& [name, content] : found) {
        if (!older.contains(name))
            std::filesystem::remove(folder / name);
    }
    for (const auto& [name, content] : older) {
        const auto present = found.find(name);
        if (present == found.end() || present->second != content)
            WriteOlder(name, content);
    }
}

}
