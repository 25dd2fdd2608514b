#pragma once
// Looks at what a machine needs before it can be served: settings, port and folders. One thread at a time; opens and
// closes the port, and blocks for the disk and for lost network drives.

#include "files/Installation.h"

#include <vector>

namespace tarvin {

struct Finding {
    KelText text;
    bool isProblem = false;
    // What mends a problem, for a shell. Empty if no command helps.
    KelText command = {};
};

// What is there, and what is wrong, in the order in which a start uses it. Changes nothing: a device gets no port name.
// A port that the machine's own program has open is well.
std::vector<Finding> CheckMachine(const Installation& installation, const KelText& machineName);

bool HasProblem(const std::vector<Finding>& findings);

// The findings as lines for a console, each with its line end.
KelText DescribeFindings(const std::vector<Finding>& findings);

}
