// What most sources of the window include.
#include "Standard.h"
#include "ui/Wx.h"
