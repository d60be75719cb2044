#include "model/event_record.h"

#include <gtest/gtest.h>

#include "fake_clock.h"
#include "model/mac.h"

namespace orvc {
namespace {

TEST(EventRecordTest, AMalformedAddressLeavesTheOldOne) {
    EventRecord record;
    const auto take = [&](std::optional<std::string_view> text) {
        EXPECT_TRUE(setEventField(record, "TriggerDeviceMAC", text, 0));
        return formatMac(record.triggerDevice);
    };
    EXPECT_EQ(take("02:4B:53:00:00:1a"), "02:4b:53:00:00:1a");
    for (const auto* text :
         {"", "02:4b:53:00:00", "02:4b:53:00:00:", "02-4b-53-00-00-1a", "024b5300001a", "zz:00:00:00:00:00"})
        EXPECT_EQ(take(text), "02:4b:53:00:00:1a") << text;
    EXPECT_EQ(take(std::nullopt), "02:4b:53:00:00:1a");
    EXPECT_EQ(take("0:1:2:3:4:f"), "00:01:02:03:04:0f");
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
