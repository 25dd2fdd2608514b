#pragma once
// Conversations with a controller as data: what it sends, what it must get, what the program shows, what is on the
// disk. Replayed on the engine with a fake port and on the real service over a pseudo-terminal.

#include "harness/TemporaryFolder.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvin::test {

// "{NC}" in a text stands for the folder of NC files.
struct TranscriptStep {
    std::string send;
    std::string expect;
    std::string status = {};  // of the status line, once all is quiet; empty: not looked at
    std::string message = {}; // caption and text of a message box that the step must bring
};

struct Transcript {
    using Files = std::vector<std::pair<std::string, std::string>>;

    std::string name;
    std::vector<TranscriptStep> steps;
    Files before = {}; // a name that ends in "/" makes a folder
    Files after = {};
    // Lines of the settings file, behind the sections "Port Settings" and "Files".
    std::string portSettings = {};
    std::string fileSettings = {};
};

// The message as it stands on the line, with its checksum and carriage return. Reckoned apart from the program.
std::string Message(std::string_view text);

const std::vector<Transcript>& Transcripts();

// Puts the files of before into the folder of NC files, and requires those of after to be there.
void MakeFilesBefore(const Transcript& transcript, const TemporaryFolder& folder);
void CheckFilesAfter(const Transcript& transcript, const TemporaryFolder& folder);

// What a transcript's settings file holds, for files in the folder `ncFolder`.
std::string SettingsProfile(const Transcript& transcript);

// With the separators of the system that the folder's name is of.
std::string WithFolder(std::string text, const std::string& ncFolder);

}
