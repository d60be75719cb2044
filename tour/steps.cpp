#include "tour/steps.h"

#include "tour/console_texts.h"

namespace orvc::driver {

void answerMessage(ConsoleDriver& console, const Narrator& narrator, const std::string& text, unsigned answer,
                   const std::string& picture) {
    const HWND box = console.waitForMessageBox();
    require(box != nullptr, "no message appeared");
    const std::string found = ConsoleDriver::messageText(box);
    require(found == text, "the message is \"" + toUtf8(found) + "\"");
    narrator.takePicture(box, picture);
    ConsoleDriver::click(box, answer);
    require(console.waitUntilGone(box), "the message did not go");
}

}  // namespace orvc::driver
