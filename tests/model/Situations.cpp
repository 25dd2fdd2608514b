#include "model/Situations.h"

#include <initializer_list>
#include <string>
#include <utility>

namespace tarvin::test {

using namespace std::chrono_literals;
using Check = Situation::Check;
using Events = std::vector<Event>;

namespace {

// Files to ask for: lines with an empty one between them and without a last line end, a line that is too long, empty
// lines alone, and one line that an upload may bring again.
const Files folder = {{"1.nc", "N1\r\n\r\nN2\nN3"},
                      {"2.nc", "N1\n" + std::string(994, 'X') + "\n"},
                      {"3.nc", "\r\n\r\n"},
                      {"4.nc", "N7\r\n"}};

Situation Made(std::string name, std::initializer_list<Events> alphabets) {
    Situation situation;
    situation.name = std::move(name);
    situation.files = folder;
    situation.writtenElsewhere = {"6"};
    for (const Events& each : alphabets)
        situation.alphabet.insert(situation.alphabet.end(), each.begin(), each.end());
    return situation;
}

Events Conversation() {
    return {Right("ABTS"),  Right("ABSE1"), Right("ABSE77"), Right("ABSE/1"), Right("ABSE2"),
            Right("ABST5"), Right("ABST1"), Right("ABST.."), Right("ABADN7"), Right("ABAD"),
            Right("ABEF"),  Right("ABAK"),  Right("ABNK"),   Right("*7N?")};
}

Events Unusual() {
    return {Right("ABSE3"),       Right("ABSE004"), Right("ABST4"),         Right("ABST6"),
            Right("ABAD(ABST8)"), Right("*ABTS"),   Right("*ABAK"),         Right("ABEFABTS"),
            Right("ABAKABNK"),    Wrong("ABADN8"),  WithDriverError("ABAK")};
}

Events Damaged() {
    return {Wrong("ABADN8"),         Wrong("ABST1"), Wrong("ABSE1"),       Wrong("ABEF"),
            Wrong("ABAK"),           Wrong("ABTS"),  Wrong("A?AD(ABST8)"), WithDriverError("ABADN9"),
            WithDriverError("ABST5")};
}

Events Uploads() {
    return {Right("ABTS"), Right("ABST5"), Right("ABST1"), Right("ABADN7"),
            Right("ABAD"), Right("ABEF"),  Right("ABAK"),  Right("*7N?")};
}

Situation WithCheck(Check check, bool sendsChecksums) {
    const char* const names[] = {"check off", "check ends the upload", "check waits for the repeat"};
    Situation situation =
        Made(std::string(names[static_cast<int>(check)]) + (sendsChecksums ? ", checksums" : ", no checksums"),
             {Uploads(), Damaged(), {Right("ABSE1"), Right("ABNK")}});
    situation.check = check;
    situation.sendsChecksums = sendsChecksums;
    return situation;
}

Situation WithDelay() {
    Situation situation = Made("delay", {Conversation(),
                                         {Right("ABSE4"), Right("ABST6"), Wrong("ABST1"), Wrong("ABSE1"),
                                          Wrong("ABADN8"), Silence(1s), Silence(2s)}});
    situation.delaySeconds = 2;
    situation.hasStartCharacter = true;
    situation.sendsChecksums = true;
    return situation;
}

// A file that has just been stored is looked at twice. The uploads before it make it fresh.
Situation WithSecondLook() {
    Situation situation = Made("second look", {Uploads(),
                                               {Right("ABSE5"), Right("ABSE1"), Right("ABST.."), Right("ABNK"),
                                                Wrong("ABADN8"), Silence(200ms), Silence(1s)}});
    situation.hidesWriters = true;
    situation.sendsChecksums = true;
    situation.prelude = {Right("ABST5"), Right("ABADN7"), Right("ABADN8"), Right("ABEF")};
    return situation;
}

Situation WithFaults(int replacedFilesKept) {
    Situation situation = Made(
        "disk faults, " + std::to_string(replacedFilesKept) + " kept",
        {Uploads(),
         {Right("ABSE1"), Right("ABST4"), WithFault("ABADN8", DiskFault::Write), WithFault("ABEF", DiskFault::Sync),
          WithFault("ABEF", DiskFault::Name), Change("the .part is removed", Event::Kind::PartRemoved)}});
    situation.replacedFilesKept = replacedFilesKept;
    return situation;
}

Situation WithHeldName() {
    return Made("held name", {Uploads(),
                              {Right("ABSE1"), Wrong("ABEF"), Silence(1s), Silence(2s),
                               Change("the .part is removed", Event::Kind::PartRemoved),
                               Change("the name is held", Event::Kind::NameHeld),
                               Change("the name is released", Event::Kind::NameReleased)}});
}

Situation WithOutages() {
    Situation situation =
        Made("outages", {Conversation(), {Silence(1s), Change("the link is lost", Event::Kind::LinkLost)}});
    situation.delaySeconds = 1;
    return situation;
}

Situation WithHolds(Check check, int delaySeconds) {
    Situation situation =
        Made("holds, delay of " + std::to_string(delaySeconds) + " s",
             {{Right("ABTS"), Right("ABSE1"), Right("ABST5"), Right("ABADN7"), Right("ABADN8"), Right("ABEF"),
               Right("ABAK"), Right("ABNK"), Right("*7N?"), Wrong("ABADN7"), Wrong("ABAK"), Silence(5s),
               Change("the line is held", Event::Kind::Hold), Change("the line flows", Event::Kind::Release),
               Change("the link is lost", Event::Kind::LinkLost)}});
    situation.check = check;
    situation.sendsChecksums = true;
    situation.delaySeconds = delaySeconds;
    situation.hasStartCharacter = delaySeconds > 0;
    return situation;
}

// One message before the controller is taken to send checksums, or is no longer taken for it.
Situation BeforeLearning(bool sendsChecksums) {
    Situation situation = Made(sendsChecksums ? "about to forget checksums" : "about to learn checksums",
                               {Uploads(), Damaged(), {Right("ABADN8")}});
    situation.sendsChecksums = sendsChecksums;
    situation.learnsChecksums = true;
    situation.deepest = 3;
    situation.check = sendsChecksums ? Check::Off : Check::EndTheUpload;
    situation.prelude = {Right("ABST5")};
    for (int line = 11; line < (sendsChecksums ? 18 : 17); ++line)
        situation.prelude.push_back(sendsChecksums ? Wrong("ABADN" + std::to_string(line))
                                                   : Right("ABADN" + std::to_string(line)));
    return situation;
}

}

std::vector<Situation> Situations() {
    return {Made("conversation", {Conversation(), Unusual()}),
            WithCheck(Check::Off, true),
            WithCheck(Check::EndTheUpload, true),
            WithCheck(Check::WaitForTheRepeat, true),
            WithCheck(Check::WaitForTheRepeat, false),
            WithDelay(),
            WithSecondLook(),
            WithFaults(5),
            WithFaults(1),
            WithHeldName(),
            WithOutages(),
            WithHolds(Check::EndTheUpload, 0),
            WithHolds(Check::WaitForTheRepeat, 2),
            BeforeLearning(false),
            BeforeLearning(true)};
}

}
