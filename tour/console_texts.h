// The console's texts in the language in which it speaks to this user.
#pragma once

#include <string>

namespace orvc::driver {

// The text of an id, in the code page of the machine, from the language library that the console beside this program
// takes, else from the console itself; empty when neither has it.
std::string consoleText(unsigned id);

// The Windows identifier by which that library was found; 0 when the console speaks for itself.
unsigned consoleLanguage();

// A text of this program in UTF-8, for its output.
std::string toUtf8(const std::string& text);

}  // namespace orvc::driver
