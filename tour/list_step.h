// The part of the tour that works the Event list: finds, sorts, changes several Events, and mends one.
#pragma once

#include <string>

#include "tour/steps.h"

namespace orvc::driver {

// These throw StepFailed, and leave the list with all its Events, sorted by name.

void findByTyping(ConsoleDriver& console, const Narrator& narrator);
void sortByColumn(ConsoleDriver& console, const Narrator& narrator);

// Disables three Events and enables them again.
void changeSeveral(ConsoleDriver& console, const Narrator& narrator);

// Duplicates an Event and deletes the copy.
void duplicateOne(ConsoleDriver& console, const Narrator& narrator);

// Finds the first Event with a problem, "Annex door", shows what is wrong, and gives it the group `source`.
void mendProblem(ConsoleDriver& console, const Narrator& narrator, const std::string& source);

}  // namespace orvc::driver
