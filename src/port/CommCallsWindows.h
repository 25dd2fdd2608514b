#pragma once
// The system calls that a serial port is made of. A test puts others in their place: no machine without ports, modem
// lines and faults at hand could show what is made of their answers.

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
    decltype(&::ClearCommError) clearCommError = &::ClearCommError;
    decltype(&::ReadFile) readFile = &::ReadFile;
    decltype(&::WriteFile) writeFile = &::WriteFile;
    decltype(&::CancelSynchronousIo) cancelSynchronousIo = &::CancelSynchronousIo;
    decltype(&::timeBeginPeriod) timeBeginPeriod = &::timeBeginPeriod;
    decltype(&::timeEndPeriod) timeEndPeriod = &::timeEndPeriod;
};

}
