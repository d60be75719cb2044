// The console as a whole: makes its parts in order and runs the main window.
#pragma once

namespace orvc {

// Runs the console until its main window ends. Returns the process's exit code. Called once, on the main thread.
int runConsole();

}  // namespace orvc
