// What the checker's tests share: a small installation that can change, its Events, and who listens to the checker.
#pragma once

#include <gtest/gtest.h>

#include <set>

#include "checker/event_checker.h"
#include "fake_log_system.h"
#include "model/variable_path.h"

namespace orvc {

inline constexpr KSMac kFrontDoor{0x02, 0x4B, 0x53, 0x10, 0x00, 0x01};
inline constexpr KSMac kGate{0x02, 0x4B, 0x53, 0x10, 0x00, 0x02};

// Notes who is affected.
struct AffectedEvents final : EventCheckerObserver {
    void eventAffected(const EventRecord& record) override { keys.insert(record.key); }
    void everyEventAffected() override { all = true; }

    std::set<std::string> keys;
    bool all = false;
};

// Devices "Front door" and "Gate", groups "Nurses" with a member and "Nobody" without, Schedule {N} "Office hours",
// audio message "chime" named "Chime", a mail server.
class CheckerTest : public testing::Test {
  protected:
    CheckerTest() {
        device(kFrontDoor, "Front door");
        device(kGate, "Gate");
        group(1, "Nurses");
        directory_.doNewGroupMember(1, kGate);
        group(2, "Nobody");
        message("chime", "Chime");
        schedules_.makeDefault();
        schedule("{N}", "Name", "Office hours");
        schedule("{N}", "Hours", formatHours(WeekMask::everySlot()));
        mailHost("mail.example");
        checker_.observe(&affected_);
    }
    void device(const KSMac& mac, std::string_view name) {
        KSConnectionInfo info{.mac = mac};
        setFieldText(info.deviceName, name);
        directory_.updateDevice(info, std::nullopt, 1);
    }
    void group(std::uint32_t id, std::string_view key, std::uint32_t expectedMembers = 0) {
        KSGroupRecord record{.groupId = id, .expectedMembers = expectedMembers};
        setFieldText(record.key, key);
        directory_.updateGroup(record);
    }
    void message(std::string_view key, std::string_view name) {
        KSMessageRecord record;
        setFieldText(record.key, key);
        setFieldText(record.name, name);
        directory_.doNewGroupMessageInfo(record);
    }
    void schedule(const std::string& key, const std::string& field, std::string_view text) {
        schedules_.updateVariable({joinPath(kSchedulesPath, key) + "\\" + field, 0, text});
    }
    void mailHost(std::string_view host) { mail_.updateVariable({"\\ORVS\\smtpHost", 0, host}); }
    // An enabled Event without any problem.
    static EventRecord wholeEvent(std::string key) {
        EventRecord record;
        record.key = std::move(key);
        record.name = "The Event " + record.key;
        record.completeBits = 1;
        record.triggerType = static_cast<std::uint32_t>(Trigger::kButtonActivation);
        record.triggerDevice = kFrontDoor;
        record.scheduleKey = "{N}";
        record.responseType = static_cast<std::uint32_t>(Response::kActivateRelay);
        record.responseDevice = kGate;
        record.disabled = 0;
        return record;
    }

    Journal journal_;
    JournalLog log_{journal_};
    Directory directory_{log_.log};
    ScheduleList schedules_{log_.log, log_.clock};
    MailSettings mail_;
    EventChecker checker_{events_, directory_, schedules_, mail_};
    EventList events_{checker_, log_.log, log_.clock};
    AffectedEvents affected_;
};

}  // namespace orvc
