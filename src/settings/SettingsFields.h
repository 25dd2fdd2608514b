#pragma once
// The fields of DownloadSettings that the settings record holds, for code that treats all of them alike. Any thread.

#include "settings/DownloadSettings.h"

namespace tarvin {

// Calls `visit` with a pointer to each member, in the order of the record. A new field goes to the end, or older
// programs read wrong values.
template <class Visitor>
void ForEachField(Visitor&& visit) {
    visit(&DownloadSettings::port);
    visit(&DownloadSettings::baudRate);
    visit(&DownloadSettings::parity);
    visit(&DownloadSettings::dataBits);
    visit(&DownloadSettings::stopBits);
    visit(&DownloadSettings::flowControl);
    visit(&DownloadSettings::uploadPath);
    visit(&DownloadSettings::downloadPath);
    visit(&DownloadSettings::fileExtension);
    visit(&DownloadSettings::transmitDelaySeconds);
    visit(&DownloadSettings::logFile);
    visit(&DownloadSettings::writeLog);
    visit(&DownloadSettings::characterDelayMilliseconds);
    visit(&DownloadSettings::lineDelayMilliseconds);
    visit(&DownloadSettings::sendStartCode);
    visit(&DownloadSettings::sendEndCode);
    visit(&DownloadSettings::startCharacter);
    visit(&DownloadSettings::endCharacter);
    visit(&DownloadSettings::commsLogFileName);
    visit(&DownloadSettings::ctsFlow);
    visit(&DownloadSettings::dsrFlow);
    visit(&DownloadSettings::reservedInt);
    visit(&DownloadSettings::networkMode);
    visit(&DownloadSettings::serverMode);
    visit(&DownloadSettings::stationName);
    visit(&DownloadSettings::incomingCheck);
    visit(&DownloadSettings::replacedFilesKept);
    visit(&DownloadSettings::sendsChecksums);
    visit(&DownloadSettings::controllerKind);
    visit(&DownloadSettings::silenceSeconds);
    visit(&DownloadSettings::attentionMinutes);
    visit(&DownloadSettings::callsWithSound);
    visit(&DownloadSettings::historyYears);
    visit(&DownloadSettings::language);
    visit(&DownloadSettings::newFilesPerHour);
}

// The settings `mine` with each field that `theirs` has changed since both had the values of `base`. Where both have
// changed a field, the value of `theirs` counts. What the program of `mine` has learned about the controller stays.
DownloadSettings MergedSettings(const DownloadSettings& mine, const DownloadSettings& base,
                                const DownloadSettings& theirs);

}
