#include "harness/Transcript.h"

#include <string>

namespace tarvin::test {

namespace {

const std::string acknowledge = Message("AAAK");
const std::string cannotRead = Message("AAAK01");
const std::string cannotGoOn = Message("AAAK03");
const std::string linkTestAnswer = Message("AATS");
const std::string downloadEnd = Message("AAEF");
const std::string dataGood = Message("ABAK");
const std::string dataBad = Message("ABNK");
const std::string linkTest = Message("ABTS");

std::string Data(std::string_view line) {
    return Message("AADA" + std::string(line));
}

std::string EveryByteBut(char excluded) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        if (static_cast<char>(byte) != excluded)
            bytes.push_back(static_cast<char>(byte));
    }
    return bytes;
}

std::vector<Transcript> LinkTests() {
    return {
        {"a link test is answered",
         {{"ABTSV\r", "AATSV\r", "Loop Back Test"}, {"ABTS\r\n", "AATSV\r"}, {"\r\n\r\r\n\rABTSx\r", "AATSV\r"}}},
        {"what is no message is not answered, wherever it is cut",
         {{"\r", ""},
          {"ABXX?\r", ""},
          {"abts\r", ""},
          {"AB", ""},
          {"TS\r", linkTestAnswer},
          {std::string("A\0BT\x80S\xFF", 7), "", "Loop Back Test"},
          {"V\r", linkTestAnswer},
          {EveryByteBut('\r') + "\x11\r", ""},
          {"noise" + linkTest + linkTest, linkTestAnswer + linkTestAnswer},
          {dataGood + dataBad + Message("ABADN1") + Message("ABEF"), "", "Loop Back Test"}}},
        {"4000 bytes without an end are dropped and told of, and the next message is answered",
         {{std::string(4000, 'x'), ""},
          {"x", "", "Waiting..."},
          {linkTest, linkTestAnswer},
          {std::string(3900, 'y'), ""},
          {linkTest, linkTestAnswer}}},
    };
}

std::vector<Transcript> Uploads() {
    return {
        {"an upload is stored line by line, leading zeros of its number left out",
         {{Message("ABST00123"), acknowledge, "Uploading {NC}/123.nc - 0 bytes received."},
          {Message("ABADN10 G90"), acknowledge, "Uploading {NC}/123.nc - 9 bytes received."},
          {Message("ABAD"), acknowledge, "Uploading {NC}/123.nc - 9 bytes received."},
          {Message("ABAD%"), acknowledge},
          {Message("ABADN20 (%s%n ~)"), acknowledge},
          {Message("ABEF"), acknowledge, "Upload Completed {NC}/123.nc - 26 bytes in file."},
          {Message("ABADN30"), "", "Upload Completed {NC}/123.nc - 26 bytes in file."}},
         {{"123.nc", "an older and longer file, which is gone\n"}},
         {{"123.nc", "N10 G90\r\n%\r\nN20 (%s%n ~)\r\n"}}},
        {"a request repeated before the first line is answered again, and another number ends the upload",
         {{Message("ABST1"), acknowledge},
          {Message("ABST1"), acknowledge, "Uploading {NC}/1.nc - 0 bytes received."},
          {Message("ABADN1"), acknowledge},
          {Message("ABST2"), acknowledge, "Uploading {NC}/2.nc - 0 bytes received."},
          {Message("ABADN2"), acknowledge, "Uploading {NC}/2.nc - 4 bytes received."},
          {Message("ABEF"), acknowledge}},
         {},
         {{"1.nc.part", "N1\r\n"}, {"2.nc", "N2\r\n"}}},
        {"a code within a line of an upload is data only",
         {{Message("ABST1"), acknowledge},
          {Message("ABAD(SICHERHEITSABSTAND 5)"), acknowledge},
          {Message("ABAD(Z ABSENKEN)"), acknowledge},
          {Message("ABAD(ABTS) ABEF"), acknowledge},
          {"noise" + Message("ABADABNK"), acknowledge, "Uploading {NC}/1.nc - 57 bytes received."},
          {Message("ABEF"), acknowledge}},
         {},
         {{"1.nc", "(SICHERHEITSABSTAND 5)\r\n(Z ABSENKEN)\r\n(ABTS) ABEF\r\nABNK\r\n"}}},
        {"the answer to an upload's end is given three times at most, and only until the next message",
         {{Message("ABST1"), acknowledge},
          {Message("ABADN1"), acknowledge},
          {Message("ABEF"), acknowledge},
          {Message("ABADABEF"), ""},
          {Message("ABEF"), ""},
          {Message("ABST1"), acknowledge},
          {Message("ABEF"), acknowledge},
          {"\n" + Message("ABEF"), acknowledge},
          {Message("ABEF"), acknowledge},
          {Message("ABEF"), ""}},
         {},
         {{"1.nc", "N1\r\n"}}},
        {"bytes that do not print are left out of a line of data",
         {{Message("ABST1"), acknowledge},
          {"ABAD" + EveryByteBut('\r') + "\x11x\r", acknowledge},
          {Message("ABEF"), acknowledge}},
         {},
         {{"1.nc",
           " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~\r\n"}}},
        {"a download that is asked for while an upload runs ends the upload",
         {{Message("ABST1"), acknowledge},
          {Message("ABADN1"), acknowledge},
          {Message("ABSE2"), acknowledge + Data("N2")},
          {Message("ABAK"), downloadEnd},
          {Message("ABNK"), downloadEnd},
          {Message("ABNK"), downloadEnd, "Download Completed {NC}/2.nc - 4 bytes"},
          {Message("ABNK"), ""}},
         {{"2.nc", "N2\n"}},
         {{"1.nc.part", "N1\r\n"}}},
        {"an upload under way leaves the older file, which a download gets",
         {{Message("ABST1"), acknowledge},
          {Message("ABADnew"), acknowledge},
          {Message("ABSE1"), acknowledge + Data("older")},
          {Message("ABAK"), downloadEnd},
          {Message("ABST1"), acknowledge},
          {Message("ABADnewer"), acknowledge},
          {Message("ABEF"), acknowledge},
          {Message("ABSE1"), acknowledge + Data("newer")},
          {Message("ABST1"), acknowledge},
          {Message("ABEF"), acknowledge,
           "Upload Completed {NC}/1.nc - 0 bytes in file: no line has come, and the older file stays"}},
         {{"1.nc", "older\n"}, {"1.nc.part", "left by another upload, and longer than this one"}},
         {{"1.nc", "newer\r\n"}}},
        {"an upload is refused whose name belongs to a folder",
         {{Message("ABST1"), cannotGoOn, "Upload could not open/write to {NC}/1.nc: a folder has this name"},
          {Message("ABST2"), cannotGoOn, "Upload could not open/write to {NC}/2.nc: a folder has this name"},
          {Message("ABADN1"), ""}},
         {{"1.nc/", ""}, {"2.nc.part/", ""}}},
        {"an upload that has nowhere to go is refused",
         {{Message("ABST1"), cannotGoOn, "Upload could not open/write to {NC}/missing/1.nc: there is no such folder"},
          {linkTest, linkTestAnswer}},
         {},
         {},
         "",
         "upload path={NC}/missing\n"},
        {"a folder's backslashes are slashes, and a file is no folder",
         {{Message("ABST1"), acknowledge},
          {Message("ABEF"), acknowledge},
          {Message("ABSE1"), cannotRead, "Download could not open/read from {NC}/file/1.nc"}},
         {{"sub/", ""}, {"file", "x"}},
         {{"sub/1.nc", ""}},
         "",
         "upload path={NC}\\sub\\\ndownload path={NC}/file\n"},
    };
}

std::vector<Transcript> FileNumbers() {
    // The leading zeros are removed before the checksum character. A checksum character "0" after zeros only is removed
    // with them.
    std::vector<TranscriptStep> steps = {
        {"ABST0000\r", cannotGoOn},
        {"ABST000a0\r", acknowledge, "Uploading {NC}/a.nc - 0 bytes received."},
        {Message("ABEF"), acknowledge},
    };
    for (const std::string number : {"../../x", "/etc/passwd", "..\\x", "C:x", "..", "...", "CON", "nul", "com1",
                                     "LPT9.txt", "Aux .x", "", "0000"}) {
        steps.push_back({Message("ABST" + number), cannotGoOn});
        steps.push_back({Message("ABSE" + number), cannotRead});
    }
    steps.push_back({Message("ABSE" + std::string(900, '9')), cannotRead});
    steps.push_back({Message("ABST" + std::string(900, '9')), cannotGoOn});
    steps.push_back({Message("ABSTconsole 2."), acknowledge, "Uploading {NC}/console 2..nc - 0 bytes received."});
    steps.push_back({Message("ABEF"), acknowledge});
    return {{"a number that leads out of the folder or to a device names no file", steps, {}, {{"a.nc", ""}}}};
}

std::vector<Transcript> Downloads() {
    return {
        {"a download goes out line by line, one for each acknowledgement",
         {{Message("ABSE0042"), acknowledge + Data("N10G90"), "Downloading {NC}/42.nc - 8 of 28 bytes sent."},
          {dataGood, Data("%s%c%")},
          {dataGood, Data(" "), "Downloading {NC}/42.nc - 18 of 28 bytes sent."},
          {dataGood, Data("\x80\xFF\x11\x01")},
          {dataGood, downloadEnd, "Download Completed {NC}/42.nc - 24 bytes"},
          {dataGood + dataBad, "", "Download Completed {NC}/42.nc - 24 bytes"}},
         {{"42.nc", "\n\r\n\r\nN10G90\r\n%s%c%\n \n\n\x80\xFF\x11\x01\r\n"}}},
        {"a file without a last line end, and one without any line",
         {{Message("ABSE1"), acknowledge + Data("N1")},
          {dataGood, Data("N2")},
          {dataGood, downloadEnd},
          {Message("ABSE2"), acknowledge + downloadEnd, "Download Completed {NC}/2.nc - 0 bytes"},
          {Message("ABSE3"), acknowledge + downloadEnd}},
         {{"1.nc", "N1\nN2"}, {"2.nc", "\r\n\n\r\n"}, {"3.nc", ""}}},
        {"a file that is not there, or is a folder, is refused",
         {{Message("ABSE1"), cannotRead, "Download could not open/read from {NC}/1.nc"},
          {Message("ABSE2"), cannotRead, "Download could not open/read from {NC}/2.nc: it is no regular file"},
          {dataGood, ""},
          {linkTest, linkTestAnswer}},
         {{"2.nc/", ""}}},
        {"a line is sent three times at the most, and the next download counts anew",
         {{Message("ABSE1"), acknowledge + Data("N1")},
          {dataBad, Data("N1")},
          {dataBad, Data("N1")},
          {dataGood, Data("N2")},
          {dataBad, Data("N2")},
          {dataBad, Data("N2")},
          {dataBad, cannotGoOn, "Download Error(s) {NC}/1.nc"},
          {dataBad, ""},
          {Message("ABSE1"), acknowledge + Data("N1")},
          {dataBad, Data("N1")},
          {linkTest, linkTestAnswer},
          {Message("ABSE1"), acknowledge + Data("N1")},
          {dataBad, Data("N1")},
          {dataBad, Data("N1")},
          {dataGood, Data("N2")},
          {dataBad, Data("N2")},
          {dataGood, downloadEnd}},
         {{"1.nc", "N1\nN2\n"}}},
        {"what a download does not expect ends it, a link test or another request takes its place",
         {{Message("ABSE1"), acknowledge + Data("N1")},
          {"AB\x80K?\r", cannotGoOn, "Download Error(s) {NC}/1.nc"},
          {Message("ABSE1"), acknowledge + Data("N1")},
          {Message("ABADN1"), cannotGoOn},
          {dataGood, ""},
          {Message("ABSE1"), acknowledge + Data("N1")},
          {linkTest, linkTestAnswer, "Loop Back Test"},
          {dataGood, ""},
          {Message("ABSE1"), acknowledge + Data("N1")},
          {"noise" + dataGood, Data("N2")},
          {Message("ABSE1"), acknowledge + Data("N1")},
          {Message("ABST2"), acknowledge},
          {Message("ABEF"), acknowledge, "Upload Completed {NC}/2.nc - 0 bytes in file."}},
         {{"1.nc", "N1\nN2\n"}},
         {{"2.nc", ""}}},
        {"a line of 993 characters is sent, a longer one refuses the file before anything is sent",
         {{Message("ABSE1"), acknowledge + Data(std::string(993, 'x'))},
          {dataGood, downloadEnd},
          {Message("ABSE2"), cannotRead, "File format error {NC}/2.nc: line 2 has more than 993 characters"},
          {Message("ABSE3"), cannotRead, "File format error {NC}/3.nc: line 2 has more than 993 characters"},
          {dataGood, ""},
          {Message("ABSE4"), cannotRead, "File format error {NC}/4.nc: line 1 has a carriage return that ends no line"},
          {Message("ABSE5"), cannotRead, "File format error {NC}/5.nc: it is UTF-16 text"},
          {Message("ABSE6"), acknowledge + Data("N1")}},
         {{"1.nc", std::string(993, 'x') + "\r\n"},
          {"2.nc", "N1\n" + std::string(994, 'x') + "\n"},
          {"3.nc", "N1\n" + std::string(24576, 'x')},
          {"4.nc", "N1\rN2\r"},
          {"5.nc", std::string("\xFF\xFEN\0001\0", 6)},
          {"6.nc", "\xEF\xBB\xBFN1\r\r\n\x1A"}}},
        {"a line that is no text refuses the file, and a box says so",
         {{Message("ABSE1"), cannotRead, "File format error {NC}/1.nc: line 2 has more than 993 characters",
           "Error: Not a valid ASCII file."},
          {dataGood, ""},
          {Message("ABSE2"), cannotRead, "File format error {NC}/2.nc: line 1 has more than 993 characters"},
          {Message("ABSE3"), cannotRead, "", "Error: Not a valid ASCII file."}},
         {{"1.nc", "N1\n" + std::string(24577, 'x') + "\nN2\n"},
          {"2.nc", std::string(994, 'x') + "\n" + std::string(24577, 'x')},
          {"3.nc", std::string(24577, 'x')}}},
        {"the file is sent whose number came with the request, whatever arrives during the delay",
         {{Message("ABSE1"), "", "Download Waiting For Controller"},
          {Message("ABXX0002"), acknowledge + Data("N1"), "Downloading {NC}/1.nc - 4 of 3 bytes sent."},
          {dataGood, downloadEnd}},
         {{"1.nc", "N1\n"}, {"2.nc", "N2\n"}},
         {},
         "transmit delay=1\n"},
    };
}

}

const std::vector<Transcript>& Transcripts() {
    static const std::vector<Transcript> transcripts = [] {
        std::vector<Transcript> all;
        for (const auto& group : {LinkTests(), Uploads(), FileNumbers(), Downloads()})
            all.insert(all.end(), group.begin(), group.end());
        return all;
    }();
    return transcripts;
}

}
