// The main function of every test program that has none of its own.
#define DOCTEST_CONFIG_IMPLEMENT
#include <iostream>

#include <doctest/doctest.h>

int main(int argumentCount, char** arguments) {
    // Each message at once, so that a test that is ended from outside has told what it found until then.
    std::cout << std::unitbuf;
    return doctest::Context(argumentCount, arguments).run();
}
