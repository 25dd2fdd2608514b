#pragma once
// The situations in which model and program are compared. Each has the events that matter in it.

#include "model/ConversationModel.h"

#include <vector>

namespace tarvin::test {

std::vector<Situation> Situations();

}
