#pragma once
// The states of the conversation that the model enters, as the status line numbers them.

namespace tarvin::test {

inline constexpr int linkTest = 2;
inline constexpr int downloadWaiting = 5;
inline constexpr int downloadPreparation = 8;
inline constexpr int downloadCouldNotOpen = 9;
inline constexpr int uploadCouldNotOpen = 10;
inline constexpr int downloading = 12;
inline constexpr int uploading = 13;
inline constexpr int downloadErrors = 14;
inline constexpr int uploadErrors = 15;
inline constexpr int downloadCompleted = 18;
inline constexpr int uploadCompleted = 19;
inline constexpr int fileFormatError = 26;

}
