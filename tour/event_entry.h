// Enters an Event into the editor as an operator does: field by field, with the entries' texts.
#pragma once

#include <functional>
#include <string>

#include "tour/steps.h"

namespace orvc::driver {

// What is entered; an empty text leaves a field as it is.
struct EventEntry {
    std::string name;
    std::string trigger;
    std::string source;
    std::string timeout;
    std::string timeoutValue;
    std::string timeoutUnit;
    std::string schedule;
    std::string response;
    std::string destination;
    // The payload, by response: an audio message's name, a file name, a spoken text; an e-mail has its own fields.
    std::string payload;
    std::string from;
    std::string to;
    std::string subject;
    std::string message;
};

// Called with each sub-editor when it is filled in, before it is saved.
using SubEditorSeen = std::function<void(HWND subEditor)>;

// Fills the open editor in, sub-editors included, and leaves it open. Throws StepFailed.
void enterEvent(ConsoleDriver& console, HWND editor, const EventEntry& entry, const SubEditorSeen& seen = nullptr);

// Opens the editor for a new Event, fills it in, and saves. Throws StepFailed.
void createEvent(ConsoleDriver& console, const EventEntry& entry);

// Presses Save and waits until the editor has closed. Throws StepFailed.
void saveEvent(ConsoleDriver& console, HWND editor);

}  // namespace orvc::driver
