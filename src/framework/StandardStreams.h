#pragma once
// The three streams that every program is started with, or not. Before the first file is opened.

namespace tarvin {

// Puts the null device in place of each that is closed. Otherwise the next file or device that is opened takes its
// number, and what is printed goes there.
void SecureStandardStreams();

}
