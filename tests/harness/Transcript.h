#pragma once
// Conversations with a controller as data: the bytes that the controller sends, the answer it must get, the program's
// status and the files. They are replayed on the engine with a fake port, and on the real service over a
// pseudo-terminal.

#include "harness/TemporaryFolder.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvin::test {

// "{NC}" in a status or a settings line stands for the folder of NC files.
struct TranscriptStep {
    std::string send;
    std::string expect;
    std::string status = {};  // expected status line after the exchange; empty: any
    std::string message = {}; // caption and text of a message box that must appear; empty: none is required
};

struct Transcript {
    using Files = std::vector<std::pair<std::string, std::string>>;

    std::string name;
    std::vector<TranscriptStep> steps;
    Files before = {}; // made first; a name that ends in "/" is a folder
    Files after = {};  // required at the end
    // Lines of the sections "Port Settings" and "Files" of the settings file.
    std::string portSettings = {};
    std::string fileSettings = {};
};

// The bytes of a message on the line: `text`, its checksum and a carriage return. Computed without the program's own
// code, so that the tests notice a wrong checksum.
std::string Message(std::string_view text);

const std::vector<Transcript>& Transcripts();

// `folder` holds the folder "NC". The second one fails the test if a file is missing or differs.
void MakeFilesBefore(const Transcript& transcript, const TemporaryFolder& folder);
void CheckFilesAfter(const Transcript& transcript, const TemporaryFolder& folder);

// The settings file of a transcript in text form, with "{NC}" still in it.
std::string SettingsProfile(const Transcript& transcript);

// Replaces "{NC}" by `ncFolder`, and the slashes after it by the separator that `ncFolder` uses.
std::string WithFolder(std::string text, const std::string& ncFolder);

}
