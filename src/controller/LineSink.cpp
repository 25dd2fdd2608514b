#include "controller/LineSink.h"

#include "controller/ControllerFrame.h"

namespace tarvin::controller {

Outcome LineCollector::Take(std::string_view lineText) {
    content += lineText;
    content += "\r\n";
    return Outcome::Right();
}

Outcome LineComparer::Take(std::string_view lineText) {
    if (taken == expected.size())
        return Outcome::Failed(Quoted(lineText) + " came, but the file has no more lines");
    if (lineText != expected[taken])
        return Outcome::Failed(Quoted(lineText) + " came, but the file has " + Quoted(expected[taken]));
    ++taken;
    return Outcome::Right();
}

Outcome LineComparer::TakeEnd() {
    if (taken == expected.size())
        return Outcome::Right();
    return Outcome::Failed("line " + std::to_string(taken + 1) + ": the end came, but the file has " +
                           Quoted(expected[taken]));
}

}
