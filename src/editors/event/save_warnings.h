// What saving an Event will change although the operator did not ask for it: told in the editor before it is saved.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editors/event/event_form.h"
#include "model/event_record.h"
#include "payload/payload_file.h"
#include "support/string_table.h"

namespace orvc {

// One sentence: the id of its text, and what its placeholders are filled with, two values at most.
struct SaveWarning {
    unsigned text = 0;
    std::vector<std::string> values;

    friend bool operator==(const SaveWarning&, const SaveWarning&) = default;
};
using SaveWarnings = std::vector<SaveWarning>;

// `opened` is the Event as the editor loaded it; none for a new one. What the operator changed on the screen is not
// told: a delay chosen anew, for instance.
SaveWarnings warningsFor(const EventForm& form, const std::optional<EventRecord>& opened);

// About a text to be spoken, and about an e-mail, while they are entered.
SaveWarnings warningsForText(std::string_view text);
SaveWarnings warningsForEmail(const EventEmail& email);

// The e-mail would make its payload file unreadable: it must not be saved.
bool spoilsPayloadFile(const EventEmail& email);

// The characters that a payload file loses, each once, in their order and with blanks between them: "ü ß". After the
// first 20 comes "...". Takes every byte for a character.
std::string lostCharacters(std::string_view text);

// All sentences, one after the other.
std::string textOf(const SaveWarnings& warnings, const StringTable& strings);

}  // namespace orvc
