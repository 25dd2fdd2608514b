#include "messages/DebugLog.h"

#include "files/NativeFile.h"
#include "harness/TemporaryFolder.h"

#include <thread>
#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

TEST_CASE("DebugLog: the first text of a run replaces the log, and the next ones are added to it") {
    const TemporaryFolder folder;
    folder.WriteFile("Debug.Log", "an older run");
    DebugLog log([&] { return folder.Path(); }, [&] { return folder / "second"; });
    CHECK(log.Log(KelText(DebugLog::bufferSize, u'x')) == -1);
    CHECK(folder.ReadFile("Debug.Log") == "an older run");
    CHECK(log.Log(u"\n\u00E4\n") == 3);
    CHECK(log.Log(KelText(DebugLog::bufferSize - 1, u'x')) == DebugLog::bufferSize - 1);
    CHECK(folder.ReadFile("Debug.Log") == "\r\n\xC3\xA4\r\n" + std::string(DebugLog::bufferSize - 1, 'x'));
    CHECK_FALSE(std::filesystem::exists(folder / "second"));
}

TEST_CASE("DebugLog: a log that cannot be opened is tried again with each text") {
    const TemporaryFolder folder;
    folder.WriteFile("file", "content");
    for (const std::filesystem::path& place : {folder / "file", folder / "machine/a"}) {
        std::filesystem::path second;
        DebugLog log([] { return std::filesystem::path(); }, [&] { return second; });
        CHECK(log.Log(u"nowhere") == 0);
        second = place;
        std::filesystem::create_directories(folder / "machine/a/Debug.Log");
        CHECK(log.Log(u"lost") == 0);
        std::filesystem::remove_all(folder / "machine");
        std::filesystem::remove_all(folder / "file");
        CHECK(log.Log(u"kept") == 4);
        CHECK(log.Log(u"2") == 1);
        CHECK(ReadWholeFile(place / "Debug.Log", 100).ValueOr("") == "kept2");
    }
}

TEST_CASE("DebugLog: a text logged while this thread writes is dropped, and texts of other threads stay together") {
    const TemporaryFolder folder;
    const std::vector<KelText> texts[] = {{u"a", u"b", u"c\n"}, {u"1", u"2", u"3\n"}};
    DebugLog* nested = nullptr;
    DebugLog log(
        [&] {
            CHECK(nested->Log(u"nested") == 0);
            nested->LogTogether(texts[0]);
            return folder.Path();
        },
        [] { return std::filesystem::path(); });
    nested = &log;
    constexpr int rounds = 100;
    const auto write = [&](const std::vector<KelText>& together) {
        for (int round = 0; round < rounds; ++round)
            log.LogTogether(together);
    };
    std::thread other(write, texts[0]);
    write(texts[1]);
    other.join();
    std::string content = folder.ReadFile("Debug.Log");
    int counts[] = {0, 0};
    for (; content.starts_with("abc\r\n") || content.starts_with("123\r\n"); content.erase(0, 5))
        ++counts[content.front() == 'a' ? 0 : 1];
    CHECK(content == "");
    CHECK(counts[0] == rounds);
    CHECK(counts[1] == rounds);
}
