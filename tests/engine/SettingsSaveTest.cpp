#include "base/Messages.h"
#include "harness/EngineHarness.h"
#include "harness/Transcript.h"
#include "protocol/RawProtocol.h"
#include "protocol/TarvinApp.h"
#include "settings/SettingsNames.h"

#include <optional>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

TEST_CASE("Monitor: settings that cannot be saved are told, with the file and the system's reason") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    const std::string file = (harness.folder / "LASER.INI").string();
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    harness.engine->Close();
    REQUIRE(harness.events.boxes.size() == 1);
    const std::string head = "Problem: The settings could not be saved.\n" + file + ": ";
    CHECK(harness.events.boxes.front().starts_with(head));
    CHECK(harness.events.boxes.front().size() > head.size());
}

namespace {

class ReloadHarness : public EngineHarness<TarvinApp> {
public:
    ReloadHarness() : EngineHarness("[Port Settings]\ntransmit delay=0\nbaudrate=9600\n[Files]\nfile extension=nc\n") {
        Open();
        Settle();
    }

    // The file changes, and the program is asked to read it. Gives its answer.
    std::optional<RequestAnswer> Reload(std::string_view profile) {
        folder.WriteFile("LASER.INI", profile);
        std::optional<RequestAnswer> answered;
        engine->ReloadSettings([&](RequestAnswer answer) { answered = answer; });
        Settle();
        return answered;
    }

    std::string Saved(std::string_view name) {
        engine->Close();
        const auto saved = SettingsStore(folder.Path(), u"LASER", u"").Load({}).settings;
        return ToUtf8(SettingValue(*FindNamedSetting(FromUtf8(name)), saved));
    }
};

}

TEST_CASE("Monitor: reloaded settings count at once, and what the user has changed meanwhile stays") {
    ReloadHarness harness;
    DownloadSettings chosen = harness.engine->Settings();
    chosen.silenceSeconds = 9;
    chosen.fileExtension = u"user";
    harness.engine->KeepSettings(chosen);
    CHECK(harness.Reload("[Port Settings]\ntransmit delay=0\nbaudrate=19200\n[Files]\nfile extension=setup\n") ==
          RequestAnswer::Done);
    CHECK(harness.engine->Settings().baudRate == u"19200");
    CHECK(harness.engine->Settings().fileExtension == u"setup");
    CHECK(harness.engine->Settings().silenceSeconds == 9);
    CHECK(ToUtf8(harness.Snapshot().linkTitle).find(":19200,") != std::string::npos);
    CHECK(harness.Saved("silence") == "9");
}

TEST_CASE("Monitor: reloaded settings that reopen the port wait for the end of a transfer, others do not") {
    ReloadHarness harness;
    harness.Exchange(Message("ABST7"));
    REQUIRE(harness.Exchange(Message("ABADG0 X1")) == Message("AAAK"));
    CHECK(harness.Reload("[Port Settings]\ntransmit delay=0\nbaudrate=9600\n[Calls]\nattention=77\n") ==
          RequestAnswer::Done);
    CHECK(harness.engine->Settings().attentionMinutes == 77);
    CHECK(harness.Reload("[Port Settings]\ntransmit delay=0\nbaudrate=19200\n[Calls]\nattention=78\n") ==
          RequestAnswer::Later);
    harness.Run(5s);
    CHECK(harness.engine->Settings().baudRate == u"9600");
    CHECK(harness.Exchange(Message("ABADG0 X2")) == Message("AAAK"));
    CHECK(harness.Exchange(Message("ABEF")) == Message("AAAK"));
    CHECK(harness.engine->Settings().baudRate == u"9600");
    harness.Run(1s);
    CHECK(harness.engine->Settings().baudRate == u"19200");
    CHECK(harness.engine->Settings().attentionMinutes == 78);
    CHECK(harness.folder.ReadFile("NC/7.nc") == "G0 X1\r\nG0 X2\r\n");
}

TEST_CASE("Monitor: settings that wait when the program ends are saved") {
    ReloadHarness harness;
    harness.Exchange(Message("ABST7"));
    CHECK(harness.Reload("[Port Settings]\nbaudrate=19200\n") == RequestAnswer::Later);
    CHECK(harness.Saved("baudrate") == "19200");
}

TEST_CASE("Monitor: settings that cannot be used are told, and the present ones stay and are saved") {
    ReloadHarness harness;
    DownloadSettings other;
    other.port = u"COM2";
    CHECK(harness.Reload(EncodeRecord(other).substr(0, 40)) == RequestAnswer::Refused);
    CHECK(harness.Snapshot().announcement == text::notice::settingsNotReloaded);
    CHECK(harness.Reload("rubbish") == RequestAnswer::Refused);
    CHECK(harness.engine->Settings().baudRate == u"9600");
    CHECK(harness.Saved("baudrate") == "9600");
}
