#include "settings/SettingsFields.h"

namespace tarvin {

DownloadSettings MergedSettings(const DownloadSettings& mine, const DownloadSettings& base,
                                const DownloadSettings& theirs) {
    DownloadSettings merged = mine;
    const auto take = [&](auto field) {
        if (theirs.*field != base.*field)
            merged.*field = theirs.*field;
    };
    ForEachField(take);
    take(&DownloadSettings::extensionFields);
    merged.sendsChecksums = mine.sendsChecksums;
    return merged;
}

}
