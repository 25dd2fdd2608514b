#pragma once
// The one way to <windows.h>: without the macros that would rename the program's own operations.
// For sources named *Windows.cpp only.

#include "framework/WindowsMacros.h"

#include <windows.h>
