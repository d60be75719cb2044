#include "model/event_record.h"

#include <gtest/gtest.h>

#include "fake_clock.h"
#include "model/mac.h"

namespace orvc {
namespace {

TEST(EventRecordTest, AMalformedAddressLeavesTheOldOne) {
    EventRecord record;
    const auto take = [&](std::optional<std::string_view> text) {
        EXPECT_NE(setEventField(record, "TriggerDeviceMAC", text, 0), nullptr);
        return formatMac(record.triggerDevice);
    };
    EXPECT_EQ(take("02:4B:53:00:00:1a"), "02:4b:53:00:00:1a");
    for (const auto* text :
         {"", "02:4b:53:00:00", "02:4b:53:00:00:", "02-4b-53-00-00-1a", "024b5300001a", "zz:00:00:00:00:00"})
        EXPECT_EQ(take(text), "02:4b:53:00:00:1a") << text;
    EXPECT_EQ(take(std::nullopt), "02:4b:53:00:00:1a");
    EXPECT_EQ(take("0:1:2:3:4:f"), "00:01:02:03:04:0f");
    EXPECT_EQ(take(" 2:\t3: 4:5:6:7 and more"), "02:03:04:05:06:07");
    EXPECT_EQ(take("8 :9:a:b:c:d"), "02:03:04:05:06:07") << "a blank behind a number";
}

TEST(EventRecordTest, AnEventIsWrittenFieldByField) {
    EventRecord record;
    record.key = "{N}";
    record.name = "Door";
    record.triggerType = 9;
    record.triggerDevice = {0xAA, 0xBB, 0, 0, 0, 1};
    record.triggerGroupKey = "tg";
    record.timeOfDay = 95;
    record.timeoutType = 1;
    record.timeoutSeconds = 120;
    record.scheduleKey = "s";
    record.responseType = 4;
    record.messageKey = "m";
    record.fileGuid = "f";
    record.ttsFilename = "t";
    record.lastChecked = 11;
    record.lastTriggered = 12;
    record.disabled = 0;
    record.completeBits = 1;
    record.badData = 0;
    VariableValues expected{{"EventName", "Door"},
                            {"EventTriggerType", 9u},
                            {"TriggerDeviceMAC", "aa:bb:00:00:00:01"},
                            {"TriggerGroupKey", "tg"},
                            {"TriggerTimeoutType", 1u},
                            {"TriggerTimeoutSeconds", 120u},
                            {"TriggerTimeOfDay", 95u},
                            {"ScheduleKey", "s"},
                            {"EventResponseType", 4u},
                            {"MessageKey", "m"},
                            {"FileGUID", "f"},
                            {"TtsFilename", "t"},
                            {"ResponseDeviceMAC", "00:00:00:00:00:00"},
                            {"ResponseGroupKey", ""},
                            {"lastTriggered", 12u},
                            {"lastChecked", 11u},
                            {"Disabled", 0u},
                            {"completeBits", 1u}};
    for (VariableValue& value : expected)
        value.name.insert(0, "\\ORVS\\Events\\{N}\\");
    EXPECT_EQ(eventValues(record, false), expected);
    expected.push_back({"\\ORVS\\Events\\{N}\\badData", 0u});
    EXPECT_EQ(eventValues(record, true), expected) << "an Event that was marked bad is cleared";
}

TEST(EventRecordTest, CompletenessDependsOnEveryRequiredField) {
    struct Row {
        const char* change;
        bool complete;
        void (*apply)(EventRecord&);
    };
    const Row rows[] = {
        {"none", true, [](EventRecord&) {}},
        {"no trigger", false, [](EventRecord& r) { r.triggerType.reset(); }},
        {"no response", false, [](EventRecord& r) { r.responseType.reset(); }},
        {"no name", false, [](EventRecord& r) { r.name.reset(); }},
        {"no schedule", false, [](EventRecord& r) { r.scheduleKey.reset(); }},
        {"no source", false, [](EventRecord& r) { r.triggerGroupKey.reset(); }},
        {"a source device", true, [](EventRecord& r) { r.triggerGroupKey.reset(), r.triggerDevice[5] = 1; }},
        {"no destination", false, [](EventRecord& r) { r.responseGroupKey.reset(); }},
        {"a destination device", true, [](EventRecord& r) { r.responseGroupKey.reset(), r.responseDevice[0] = 1; }},
        {"unchecked", false, [](EventRecord& r) { r.lastChecked.reset(); }},
        {"untriggered", false, [](EventRecord& r) { r.lastTriggered.reset(); }},
        {"not known whether disabled", false, [](EventRecord& r) { r.disabled.reset(); }},
        {"e-mail without file", false, [](EventRecord& r) { r.responseType = 4, r.messageKey = r.ttsFilename = ""; }},
        {"e-mail", true, [](EventRecord& r) { r.responseType = 4, r.fileGuid = ""; }},
        {"TTS file without name", false, [](EventRecord& r) { r.responseType = 5, r.fileGuid = r.messageKey = ""; }},
        {"TTS file", true, [](EventRecord& r) { r.responseType = 5, r.ttsFilename = ""; }},
        {"TTS message without file", false, [](EventRecord& r) { r.responseType = 6, r.messageKey = ""; }},
        {"TTS message without message", false, [](EventRecord& r) { r.responseType = 6, r.fileGuid = ""; }},
        {"TTS message", true, [](EventRecord& r) { r.responseType = 6, r.fileGuid = r.messageKey = ""; }},
        {"unknown response", true, [](EventRecord& r) { r.responseType = 4'000'000'000; }},
        {"other bits", false, [](EventRecord& r) { r.completeBits = 0xFFFFFFFD, r.name.reset(); }},
        {"bit 0 clear", true, [](EventRecord& r) { r = EventRecord(), r.completeBits = 2; }},
        {"no marker", false, [](EventRecord& r) { r.completeBits.reset(); }}};
    FakeClock clock;
    for (const Row& row : rows) {
        EventRecord record;
        record.completeBits = record.triggerType = 1;
        record.responseType = record.disabled = 0;
        record.name = record.triggerGroupKey = record.responseGroupKey = record.scheduleKey = "";
        record.completionDeadline = clock.seconds = 1'000;
        row.apply(record);
        EXPECT_EQ(isEventComplete(record, clock), row.complete) << row.change;
        clock.seconds = 1'001;
        EXPECT_EQ(isEventComplete(record, clock), record.completeBits.has_value()) << row.change << ", grace over";
    }
}

}  // namespace
}  // namespace orvc
