#pragma once
// The system calls of the Windows serial port. A test replaces them to give every answer and every fault without a
// device.

#include "base/WindowsApi.h"

#include <timeapi.h>

namespace tarvin {

struct CommCalls {
    decltype(&::CreateFileW) createFile = &::CreateFileW;
    decltype(&::CloseHandle) closeHandle = &::CloseHandle;
    decltype(&::SetupComm) setupComm = &::SetupComm;
    decltype(&::GetCommState) getCommState = &::GetCommState;
    decltype(&::BuildCommDCBW) buildCommDcb = &::BuildCommDCBW;
    decltype(&::SetCommState) setCommState = &::SetCommState;
    decltype(&::SetCommTimeouts) setCommTimeouts = &::SetCommTimeouts;
    decltype(&::PurgeComm) purgeComm = &::PurgeComm;
    decltype(&::EscapeCommFunction) escapeCommFunction = &::EscapeCommFunction;
    decltype(&::ClearCommError) clearCommError = &::ClearCommError;
    decltype(&::ReadFile) readFile = &::ReadFile;
    decltype(&::WriteFile) writeFile = &::WriteFile;
    decltype(&::CancelSynchronousIo) cancelSynchronousIo = &::CancelSynchronousIo;
    decltype(&::timeBeginPeriod) timeBeginPeriod = &::timeBeginPeriod;
    decltype(&::timeEndPeriod) timeEndPeriod = &::timeEndPeriod;
};

}
