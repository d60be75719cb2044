#include "session/payload_fetcher.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

constexpr char kFile[] = "{00000001-0002-0003-0405-060708090A0B}";

class PayloadFetcherTest : public EditorTest {
  protected:
    PayloadFetcherTest() { setUpInstallation(); }
    // A form with an Event whose payload is asked for and yet to come.
    EventForm start(PayloadKind kind) {
        EventForm form = newForm();
        form.load(completeRecord(kind == PayloadKind::kEmail ? Response::kEmail : Response::kTtsMessage));
        EXPECT_TRUE(fetcher_.start(kind, kFile));
        return form;
    }
    // One tick of the editor's timer: whether the fetch has ended.
    bool poll(EventForm& form) {
        std::optional<FetchedPayload> fetched = fetcher_.poll();
        if (fetched) form.takeFetched(*std::move(fetched));
        return fetched.has_value();
    }
    void deliver(std::string_view chunk, const std::string& guid = kFile) {
        reader_.append(makeGUID(guid, log_.log), chunk);
    }
    void deliverWhole(std::string_view file) {
        deliver(file);
        deliver("");
    }

    FileReader reader_;
    PayloadFetcher fetcher_{link_, reader_, log_.log, log_.clock};
};

TEST_F(PayloadFetcherTest, TextAndEmailArriveInPieces) {
    const std::string read = std::string("KSFileRead ").append(kFile);
    EventForm form = start(PayloadKind::kSpokenText);
    EXPECT_EQ(journal_.take(), read);
    for (const char byte : formatTtsFile("Fire!\r\nRun")) {
        EXPECT_FALSE(poll(form));
        deliver({&byte, 1});
    }
    EXPECT_FALSE(poll(form)) << "an empty chunk ends the file";
    deliver("");
    EXPECT_TRUE(poll(form));
    log_.clock.seconds += 6;
    EXPECT_FALSE(poll(form)) << "a last tick of the timer";
    EXPECT_EQ(form.spokenText(), "Fire!\r\nRun");
    EXPECT_EQ(form.responseLine(), "Say 'Fire!...'");

    EventForm mail = start(PayloadKind::kEmail);
    EXPECT_EQ(journal_.take(),
              std::string("log: DoGetEmailFile: Getting file with GUID ").append(kFile).append("; ") + read);
    EXPECT_FALSE(poll(mail)) << "the file before was used up";
    deliverWhole(formatEmailFile({"f", "t", "", "", "s", "b%"}));
    EXPECT_TRUE(poll(mail));
    EXPECT_EQ(mail.email().body, "b%");
    EXPECT_EQ(mail.responseLine(), "To 't', 's'");
    EXPECT_TRUE(mail.enabling().save);
}

TEST_F(PayloadFetcherTest, NothingIsWaitedForLongerThanFiveSeconds) {
    for (const PayloadKind kind : {PayloadKind::kSpokenText, PayloadKind::kEmail}) {
        EventForm form = start(kind);
        deliver(formatTtsFile("half a file"));
        log_.clock.seconds += 5;
        EXPECT_FALSE(poll(form));
        log_.clock.seconds += 1;
        EXPECT_TRUE(poll(form));
        EXPECT_EQ(form.responseLine(), strings_.text(kind == PayloadKind::kEmail ? IDS_EMAIL_ERROR : IDS_TTS_ERROR));
        EXPECT_EQ(form.spokenText() + form.email().to, "");
    }
}

TEST_F(PayloadFetcherTest, WhatArrivesForAnotherResponseLeavesTheResponseLine) {
    for (const bool arrives : {true, false}) {
        EventForm form = start(PayloadKind::kSpokenText);
        form.chooseResponse(1);
        const std::string line = form.responseLine();
        if (arrives) deliverWhole(formatTtsFile("mine"));
        log_.clock.seconds += 6;
        EXPECT_TRUE(poll(form));
        EXPECT_EQ(form.responseLine(), line);
        EXPECT_EQ(form.spokenText(), arrives ? "mine" : "");
    }
}

TEST_F(PayloadFetcherTest, ARefusedReadIsAnEmptyFileAndAnotherFilesBytesAreIgnored) {
    link_.refused = "KSFileRead";
    EventForm form = newForm();
    form.load(completeRecord(Response::kTtsMessage));
    for (const char* guid : {"no guid", "{1-2-3", "{1-2-3-0405-06070809"}) {
        EXPECT_FALSE(fetcher_.start(PayloadKind::kSpokenText, guid));
        EXPECT_NE(journal_.take().find("KSFileRead {00000000-0000-"), std::string::npos) << guid;
    }
    EXPECT_TRUE(poll(form)) << "at once";
    EXPECT_EQ(form.responseLine(), "Say 'Empty'");
    link_.refused.clear();

    const std::string givenUp = "{11111111-0000-0000-0000-000000000000}";
    fetcher_.start(PayloadKind::kSpokenText, givenUp);
    deliver("<ORVS", givenUp);
    EventForm next = start(PayloadKind::kSpokenText);
    EXPECT_FALSE(poll(next)) << "the refusal does not stand for the next file";
    deliver("EventFile>", givenUp);
    deliver("", givenUp);
    EXPECT_FALSE(poll(next));
    deliverWhole(formatTtsFile("mine"));
    EXPECT_TRUE(poll(next));
    EXPECT_EQ(next.spokenText(), "mine");
}

}  // namespace
}  // namespace orvc
