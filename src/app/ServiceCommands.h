#pragma once
// The options of tarvindl-service that set up the services of the system's service manager.

#include "base/Result.h"

#include <optional>
#include <vector>

namespace tarvin {

// Carries out --install-service, --remove-service or --services, if that is the first word: what was done, in lines for
// the user. None without such an option.
std::optional<Result<KelText>> RunServiceCommand(const std::vector<KelText>& words);

}
