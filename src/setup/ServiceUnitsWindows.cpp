#include "setup/ServiceUnits.h"

namespace tarvin {

Result<SetupReport> WriteUnits(const Installation& /*installation*/, const KelText& /*machineName*/,
                               const UnitPlaces& /*places*/) {
    return SetupReport();
}

}
