#include "base/System.h"
#include "files/Installation.h"
#include "harness/TemporaryInstallation.h"
#include "settings/SettingsStore.h"
#include "setup/ServiceUnits.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

TEST_CASE("ServiceUnits: a folder of the settings adds no line of its own to the file of root") {
    const TemporaryInstallation folder;
    const auto installation = Installation::Read(folder.Path());
    REQUIRE(installation);
    SettingsStore store(folder.Path(), u"LASER", u"");
    DownloadSettings settings = store.Load({}).settings;
    settings.uploadPath = u"/a\nUser=root\n#/";
    settings.downloadPath = u"/srv/nc/";
    REQUIRE(store.SaveSettings(settings));

    const auto report = WriteUnits(*installation, u"LASER", {folder / "etc", false});
    REQUIRE(report);
    const std::string dropIn = folder.ReadFile("etc/systemd/system/tarvindl@LASER.service.d/folders.conf");
    CHECK(dropIn.find("User=") == std::string::npos);
    CHECK(dropIn.find("ReadWritePaths=\"-/srv/nc\"\n") != std::string::npos);
    CHECK(report->front().starts_with(u"Left out: a folder"));
}
