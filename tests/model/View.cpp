#include "model/View.h"

#include <cstdio>

namespace tarvin::test {

namespace {

std::string Escaped(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        if (byte >= 32 && byte < 127) {
            text += byte;
            continue;
        }
        char code[8];
        std::snprintf(code, sizeof code, "[%02x]", static_cast<unsigned char>(byte));
        text += code;
    }
    return text;
}

std::string QualityText(const Quality& quality) {
    return std::to_string(quality.damaged) + " damaged, " + std::to_string(quality.repeats) + " repeated, " +
           std::to_string(quality.driverErrors) + " driver errors";
}

}

bool ShowsBytes(int state) {
    return state == 12 || state == 13 || state == 18 || state == 19;
}

std::string RecordText(bool isUpload, const std::string& outcome, const std::string& number, std::int64_t byteCount,
                       std::int64_t lineCount, const Quality& quality) {
    return std::string(isUpload ? "upload" : "download") + " of \"" + number + "\" " + outcome + ", " +
           std::to_string(byteCount) + " bytes, " + std::to_string(lineCount) + " lines, " + QualityText(quality);
}

std::string View::Text() const {
    std::string text = "sent: " + Escaped(sent) + "\n";
    for (const std::string& record : records)
        text += "ended: " + record + "\n";
    text += "state: " + std::to_string(state) + ", file \"" + number + "\"";
    if (ShowsBytes(state))
        text += ", " + std::to_string(bytesDone) + " bytes";
    if (state == 12)
        text += " of " + std::to_string(bytesTotal);
    text += ", bar at " + std::to_string(barPosition);
    if (state == 12 || state == 13)
        text += " of " + std::to_string(barRange);
    if (hasTransfer)
        text += "; " + QualityText(quality);
    text += sendsChecksums ? "; checksums" : "";
    text += isHeldUp ? "; held up\n" : "\n";
    for (const auto& [name, content] : files)
        text += "file " + name + ": " + Escaped(content) + "\n";
    for (const auto& [name, contents] : replaced)
        for (const std::string& content : contents)
            text += "replaced " + name + ": " + Escaped(content) + "\n";
    for (const auto& [name, contents] : whole)
        for (const std::string& content : contents)
            text += "whole " + name + ": " + Escaped(content) + "\n";
    return text;
}

}
