// tarvindl: the desktop program. One window for one machine.

#include "ui/Wx.h"

int main() {
    return 0;
}
