#pragma once
// Makes this process a user without rights for as long as the object lives, if it is root's. Another user stays who he
// is.

#include "harness/SystemCallPosix.h"

#include <unistd.h>

namespace tarvin::test {

class OtherUser {
public:
    OtherUser() {
        if (isRoot)
            RequireCall(::seteuid(1234) == 0, "seteuid");
    }
    ~OtherUser() {
        if (isRoot)
            (void)!::seteuid(0);
    }
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;

private:
    const bool isRoot = ::geteuid() == 0;
};

}
