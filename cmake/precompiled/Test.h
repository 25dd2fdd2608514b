// What most tests include.
#include "Standard.h"

#include <doctest/doctest.h>
