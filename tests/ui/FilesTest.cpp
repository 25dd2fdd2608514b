#include "harness/TemporaryFolder.h"
#include "ui/FileDrop.h"
#include "ui/FilePattern.h"
#include "ui/NcFileDialogs.h"

#include <doctest/doctest.h>
#include <fnmatch.h>

namespace tarvin::test {

TEST_CASE("NcFileFilters: the filter finds the extension in any case, and the last one finds everything") {
    struct Case {
        const char16_t* extension;
        std::vector<std::string> found;
        std::vector<std::string> left;
    };
    const Case cases[] = {
        {u"nc", {"1.nc", "1.NC", "a.b.Nc"}, {"1.ncx", "nc", "1.n"}},
        {u"H1", {"1.h1", "1.H1"}, {"1.h2"}},
        {u"p[1", {"x.p[1", "x.P[1"}, {"x.p1"}},
        {u"\u00E4", {"1.\u00E4", "1.\u00C4"}, {"1.a"}},
    };
    std::setlocale(LC_CTYPE, "C.UTF-8");
    for (const Case& each : cases) {
        const std::string pattern = PatternFor(ToWx(each.extension)).utf8_string();
        CAPTURE(pattern);
        for (const std::string& name : each.found)
            CHECK_MESSAGE(::fnmatch(pattern.c_str(), name.c_str(), 0) == 0, name);
        for (const std::string& name : each.left)
            CHECK_MESSAGE(::fnmatch(pattern.c_str(), name.c_str(), 0) != 0, name);
    }
    const wxString filters = NcFileFilters(u"nc");
    CHECK(filters.StartsWith("NC files (*.nc)|"));
    CHECK(filters.EndsWith("|All Files (*.*)|*"));
}

TEST_CASE("DroppedFile: one file is taken, and a folder or several files are refused with a reason") {
    const TemporaryFolder folder;
    folder.WriteFile("part.nc", "N1\n");
    const auto drop = [](const std::vector<std::filesystem::path>& paths) {
        wxArrayString names;
        for (const auto& path : paths)
            names.Add(ToWx(FromPath(path)));
        return DroppedFile(names);
    };
    const auto taken = drop({folder / "part.nc"});
    REQUIRE(taken);
    CHECK(*taken == folder / "part.nc");
    const auto several = drop({folder / "part.nc", folder / "part.nc"});
    REQUIRE_FALSE(several);
    CHECK(several.Reason().text == u"One file can be sent at a time. Drop one file.");
    const auto dropped = drop({folder.Path()});
    REQUIRE_FALSE(dropped);
    CHECK(dropped.Reason().text.ends_with(u" is a folder. Drop the file itself."));
    CHECK_FALSE(drop({}));
}

}
