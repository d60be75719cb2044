// The part of the tour that looks at the Schedules and creates one.
#pragma once

#include <string>

#include "tour/steps.h"

namespace orvc::driver {

// Looks at the list of Schedules, at the Events that use one, and at its hours. Throws StepFailed.
void showSchedules(ConsoleDriver& console, const Narrator& narrator);

// Creates a Schedule that is on from 9:30 PM to midnight on Mondays. Throws StepFailed.
void createSchedule(ConsoleDriver& console, const Narrator& narrator, const std::string& name);

}  // namespace orvc::driver
