#include "base/Sha256.h"

#include <doctest/doctest.h>

using tarvin::Sha256;

TEST_CASE("Sha256: the published examples, whole and in pieces of every size") {
    struct Example {
        std::string bytes;
        const char* digits;
    };
    // The last ones end one byte before, on and after the place where the padding needs a block of its own.
    const Example examples[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopq"
         "rstu",
         "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1"},
        {std::string(55, 'a'), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318"},
        {std::string(56, 'a'), "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a"},
        {std::string(64, 'a'), "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb"},
    };
    for (const Example& example : examples) {
        for (std::size_t pieceSize = 1; pieceSize <= 130; ++pieceSize) {
            Sha256 sum;
            for (std::size_t start = 0; start < example.bytes.size(); start += pieceSize) {
                sum.Add(std::string_view(example.bytes).substr(start, pieceSize));
                // Reading the sum in between changes nothing.
                (void)sum.Digits();
            }
            CHECK_MESSAGE(sum.Digits() == example.digits, example.bytes, " in pieces of ", pieceSize);
        }
    }
    Sha256 million;
    for (int piece = 0; piece < 1000; ++piece)
        million.Add(std::string(1000, 'a'));
    CHECK(million.Digits() == "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}
