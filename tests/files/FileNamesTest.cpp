#include "files/FileNames.h"

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("FileNames: a name changes only where a system forbids it") {
    struct Case {
        KelText name;
        KelText fileName;
    };
    const Case cases[] = {{u"LASER 2", u"LASER 2"},
                          {u" Fr\u00E4se.v2", u" Fr\u00E4se.v2"},
                          {u"../../etc/x", u".._.._etc_x"},
                          {u"a/b\\c:d*e?f\"g<h>i|j", u"a_b_c_d_e_f_g_h_i_j"},
                          {KelText(u"a\0b\nc\x7F", 6), u"a_b_c_"},
                          {u"..", u"__"},
                          {u"a. .", u"a___"},
                          {u"nul", u"_nul"},
                          {u"Com1.x", u"_Com1.x"},
                          {u"LPT\u00B2", u"_LPT\u00B2"},
                          {u"KEL", u"_KEL"},
                          {u"kel", u"_kel"},
                          {u"KEL ", u"KEL_"},
                          {u"KEL 2", u"KEL 2"},
                          {u"COM0", u"COM0"},
                          {u"CONTOUR", u"CONTOUR"},
                          {u"LATHE1", u"LATHE1"}};
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.name));
        CHECK(ToUtf8(FileNameFor(each.name)) == ToUtf8(each.fileName));
        CHECK(FileNameFor(each.fileName) == each.fileName);
    }
}
