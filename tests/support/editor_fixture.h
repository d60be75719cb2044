// What the Event editor's tests share: a small installation, the editor's texts and a server that keeps a journal.
#pragma once

#include <gtest/gtest.h>

#include "editors/event/event_form.h"
#include "fake_log_system.h"
#include "fake_server_link.h"
#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {

inline constexpr KSMac kDoor{0x02, 0x4B, 0x53, 0xAB, 0x00, 0x1A};
inline constexpr KSMac kGate{0x02, 0x4B, 0x53, 0x00, 0x00, 0x1B};

// The lists of the usual installation: 1 = device Door, 2 = device Gate, 3 = group Nurses; Schedules 1 = the built-in
// one, 2 = Nights {N}; audio message Chime "chime".
class EditorTest : public testing::Test {
  protected:
    EditorTest() {
        strings_.texts = {{IDS_PLACE_DEVICE, "device: %s (%02x%02x%02x)"},
                          {IDS_PLACE_BLANK_DEVICE, "device: <Blank Name> (%02x%02x%02x)"},
                          {IDS_PLACE_GROUP, "group: %s"},
                          {IDS_RELAY_SELECT, "choose for %s"},
                          {IDS_RELAY_CHOSEN, "Relay %s"},
                          {IDS_RELAY_ACTIVATION, "on"},
                          {IDS_RELAY_DEACTIVATION, "off"},
                          {IDS_AUDIO_SELECT_DESTINATION, "choose for audio"},
                          {IDS_AUDIO_SELECT, "choose audio"},
                          {IDS_AUDIO_CHOSEN, "Play '%s'"},
                          {IDS_AUDIO_NOT_FOUND, "key '%s' not found"},
                          {IDS_TTS_SELECT_DESTINATION, "choose for TTS"},
                          {IDS_TTS_SELECT, "choose TTS"},
                          {IDS_TTS_FILE_CHOSEN, "File '%s'"},
                          {IDS_TTS_TEXT_CHOSEN, "Say '%s'"},
                          {IDS_EMAIL_CHOSEN, "To '%s', '%s'"},
                          {IDS_EMAIL_SELECT, "choose e-mail"},
                          {IDS_EMPTY_FIELD, "Empty"},
                          {IDS_TIME_AM, "%02d:%02d AM"},
                          {IDS_TIME_PM, "%02d:%02d PM"}};
    }
    void device(const KSMac& mac, std::string_view name) {
        KSConnectionInfo info{.mac = mac};
        setFieldText(info.deviceName, name);
        directory_.updateDevice(info, std::nullopt, 1);
    }
    void group(std::uint32_t id, std::string_view key) {
        KSGroupRecord record{.groupId = id};
        setFieldText(record.key, key);
        directory_.updateGroup(record);
    }
    void schedule(const std::string& key, std::string_view name) {
        schedules_.updateScheduleVariables({"\\ORVS\\Schedules\\" + key + "\\Name", 0, name});
    }
    void setUpInstallation() {
        device(kGate, "Gate");
        device(kDoor, "Door");
        group(1, "Nurses");
        KSMessageRecord message;
        setFieldText(message.name, "Chime");
        setFieldText(message.key, "chime");
        directory_.doNewGroupMessageInfo(message);
        schedule("{N}", "Nights");
        journal_.take();
    }
    EventForm newForm() const { return {strings_, directory_, schedules_}; }
    // An Event that stores everything that the installation has.
    static EventRecord completeRecord(Response response) {
        EventRecord record;
        record.key = "{E}";
        record.name = "Old";
        record.triggerType = static_cast<std::uint32_t>(Trigger::kButtonActivation);
        record.triggerDevice = kDoor;
        record.scheduleKey = "{N}";
        record.responseType = static_cast<std::uint32_t>(response);
        record.responseGroupKey = "Nurses";
        record.messageKey = "chime";
        record.ttsFilename = "\\\\a\\b";
        record.fileGuid = "{00000001-0002-0003-0405-060708090A0B}";
        return record;
    }

    Journal journal_;
    JournalLog log_{journal_};
    FakeServerLink link_{journal_};
    FakeStringTable strings_;
    Directory directory_{log_.log};
    ScheduleList schedules_{log_.log, log_.clock};
};

}  // namespace orvc
