#include "transfer/LineQuality.h"

#include "base/Messages.h"

namespace tarvin {

KelText DescribeQuality(const LineQuality& quality) {
    return Filled(text::notice::lineQuality,
                  {ToText(quality.damaged), ToText(quality.repeats), ToText(quality.driverErrors)});
}

}
