#include "link/event_callback.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"
#include "fake_window.h"

namespace orvc {
namespace {

std::string describe(const QueuedEvent& block) {
    const auto line = [&](const std::string& content) {
        return formatText("%04x %d: ", block.message(), static_cast<int>(block.wParam())) + content;
    };
    if (const auto* timer = dynamic_cast<const TimerEvent*>(&block)) return line(std::to_string(timer->period) + " ms");
    if (const auto* file = dynamic_cast<const FileDataEvent*>(&block)) return line(file->bytes);
    if (const auto* variable = dynamic_cast<const VariableEvent*>(&block))
        return line(std::string(variable->nameView()) + "=" + std::string(variable->textView().value_or("(none)")));
    if (const auto* connection = dynamic_cast<const ConnectionEvent*>(&block))
        return line("'" + std::string(fieldText(connection->info.deviceName)) +
                    formatText("' extra %d", connection->extra ? (*connection->extra)[119] : -1));
    return line("");
}

class EventCallbackTest : public ::testing::Test {
  protected:
    EventCallbackTest() {
        window_.onSend = [this] { return eventQueue_.drain(); };
    }
    // What one event logs and hands over.
    std::string event(std::uint32_t code, std::int32_t number = 0, const void* data = nullptr,
                      const void* connection = nullptr) {
        callback_.onEvent(code, number, connection, data);
        eventQueue_.drain();
        return journal_.take();
    }

    Journal journal_;
    JournalLog log_{journal_};
    FakeWindow window_;
    EventQueue eventQueue_{window_, [this](std::unique_ptr<QueuedEvent> block) { journal_.add(describe(*block)); }};
    EventCallback callback_{eventQueue_, log_.log, log_.clock, {4, 10, 5, 100}};
};

TEST_F(EventCallbackTest, EventsWithoutARecordAreLoggedOrIgnored) {
    const std::pair<std::uint32_t, const char*> rows[] = {
        {0, "log: 50% of %s"},
        {3, "log: Intercom -12 Event Error"},
        {5, "log: Intercom -12 Event Audio High Mark"},
        {11, "log: Event GPIO State Change"},
        {15, "1403 0: "},
        {18, "log: Unserviced Event 18 called back"},
        {30, "log: Console user 50% of %s connected"},
        {31, "log: Console user 50% of %s disconnected"},
        {100, "log: Console initialization is complete; 1410 4: 10 ms"},
        {101, "log: Console settings update is available; 1410 5: 100 ms"},
        {121 + 1, "log: Unserviced Event 122 called back"},
        {0xFFFFFFFF, "log: Unserviced Event -1 called back"}};
    for (const auto& [code, lines] : rows)
        EXPECT_EQ(event(code, -12, "50% of %s"), lines) << code;
    for (const std::uint32_t code : {2, 4, 6, 7, 8, 10, 12, 13, 14, 16, 17, 20, 21, 22, 23, 24, 40, 41, 50, 82})
        EXPECT_EQ(event(code, 1, "text"), "") << code;
}

TEST_F(EventCallbackTest, TheServersClockIsKeptAsADifference) {
    const auto serverTime = static_cast<std::uint32_t>(log_.clock.seconds - 86'400);
    EXPECT_EQ(event(32, 0, &serverTime), "log: Server Delta = -86400");
    EXPECT_EQ(callback_.serverDelta(), -86'400);
}

TEST_F(EventCallbackTest, WhatTheLibraryPointsToIsCopied) {
    char name[] = "\\ORVS\\x", value[] = "text", bytes[] = {'a', '\0', 'b'};
    const KSVariableNotification text{name, 0xC0000001, value, 3}, number{name, 0xC0000004, nullptr, 5}, empty;
    const KSFileData file{.file = {}, .bytes = bytes, .byteCount = 3};
    for (const auto* variable : {&text, &number, &empty})
        callback_.onEvent(104, 7, nullptr, variable);
    callback_.onEvent(121, 7, nullptr, &file);
    for (auto* memory : {name, value, bytes})
        *memory = 'X';
    EXPECT_EQ(event(15), "1407 0: \\ORVS\\x=text; 1407 0: \\ORVS\\x=(none); 1407 0: =(none); 1408 0: " +
                             std::string("a\0b", 3) + "; 1403 0: ");
}

TEST_F(EventCallbackTest, ConnectionsAreDeliveredBeforeTheCallbackReturns) {
    KSConnectionInfo info{.status = 0x1F};
    info.deviceName.fill('d');
    const std::string name(48, 'd');
    KSExtraIntercomInfo extra{};
    extra[119] = 42;
    const auto word = reinterpret_cast<KSWord>(&extra);
    const KSWord one[] = {1, word}, none[] = {0, word}, negative[] = {static_cast<KSWord>(-1), word},
                 null[] = {2, 0, 0};
    for (const auto& [words, found] :
         {std::pair{one, 42}, {none, -1}, {negative, -1}, {null, -1}, {static_cast<const KSWord*>(nullptr), -1}}) {
        callback_.onEvent(1, 3, &info, words);
        EXPECT_EQ(journal_.take(), "log: EVENT:New Connection '" + name + "' on socket 3 Status = 0x1f; 1401 3: '" +
                                       name + "' extra " + std::to_string(found));
    }
    setFieldText(info.deviceName, "Door");
    EXPECT_EQ(event(9, -1, one, &info),
              "log: EVENT:Reconnect 'Door' on socket -1 Status = 0x1f; log: EVENT_NEW_CONNECTION: Socket -1 should not "
              "be negative; 1401 -1: 'Door' extra 42");
}

TEST_F(EventCallbackTest, MissingDataIsNotReadNorHandedOver) {
    for (const std::uint32_t code : {1, 9, 32, 70, 71, 80, 81, 83, 99, 104, 121})
        EXPECT_EQ(event(code), "") << code;
    const KSFileData unbacked{.file = {}, .byteCount = 5};
    EXPECT_EQ(event(121, 0, &unbacked), "");
}

}  // namespace
}  // namespace orvc
