// What the parts of the tour share.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include "tour/console_driver.h"

namespace orvc::driver {

// A step that did not happen.
class StepFailed : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Throws StepFailed unless it happened.
inline void require(bool happened, const std::string& otherwise) {
    if (!happened) throw StepFailed(otherwise);
}

// How the tour tells what it does.
struct Narrator {
    std::function<void(const std::string& text)> step;
    std::function<void(HWND window, const std::string& name)> takePicture;
};

// Waits for a message box that says this, takes its picture, and answers it with a button. Throws StepFailed.
void answerMessage(ConsoleDriver& console, const Narrator& narrator, const std::string& text, unsigned answer,
                   const std::string& picture);

}  // namespace orvc::driver
