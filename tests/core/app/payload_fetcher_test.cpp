#include "app/payload_fetcher.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

constexpr char kFile[] = "{00000001-0002-0003-0405-060708090A0B}";

class PayloadFetcherTest : public EditorTest {
  protected:
    PayloadFetcherTest() { setUpInstallation(); }
    // A form with an Event whose payload is yet to come.
    EventForm load(Response response) {
        EventForm form = newForm();
        EXPECT_TRUE(form.load(completeRecord(response)).messages.empty());
        return form;
    }
    void deliver(std::string_view chunk, const std::string& guid = kFile) {
        reader_.append(makeGUID(guid, log_.log), chunk);
    }

    FileReader reader_;
    PayloadFetcher fetcher_{link_, reader_, log_.log, log_.clock};
};

TEST_F(PayloadFetcherTest, TextAndEmailArriveInPieces) {
    EventForm form = load(Response::kTtsMessage);
    EXPECT_TRUE(fetcher_.start(PayloadFetch::kSpokenText, kFile));
    EXPECT_EQ(journal_.take(), std::string("KSFileRead ").append(kFile));
    const std::string file = formatTtsFile("Fire!\r\nRun");
    for (const char byte : file) {
        EXPECT_FALSE(fetcher_.poll(form));
        deliver({&byte, 1});
    }
    EXPECT_FALSE(fetcher_.poll(form)) << "an empty chunk ends the file";
    deliver("");
    EXPECT_TRUE(fetcher_.poll(form));
    EXPECT_EQ(form.spokenText(), "Fire!\r\nRun");
    EXPECT_EQ(form.responseLine(), "Say 'Fire!...'");

    EventForm mail = load(Response::kEmail);
    EXPECT_TRUE(fetcher_.start(PayloadFetch::kEmail, kFile));
    EXPECT_EQ(journal_.take(), std::string("log: DoGetEmailFile: Getting file with GUID ")
                                   .append(kFile)
                                   .append("; "
                                           "KSFileRead ")
                                   .append(kFile));
    EXPECT_FALSE(fetcher_.poll(mail)) << "the file before was used up";
    deliver(formatEmailFile({"f", "t", "", "", "s", "b%"}));
    deliver("");
    EXPECT_TRUE(fetcher_.poll(mail));
    EXPECT_EQ(mail.email().body, "b%");
    EXPECT_EQ(mail.responseLine(), "To 't', 's'");
    EXPECT_TRUE(mail.enabling().save);
}

TEST_F(PayloadFetcherTest, NothingIsWaitedForLongerThanFiveSeconds) {
    for (const PayloadFetch kind : {PayloadFetch::kSpokenText, PayloadFetch::kEmail}) {
        const bool isEmail = kind == PayloadFetch::kEmail;
        EventForm form = load(isEmail ? Response::kEmail : Response::kTtsMessage);
        fetcher_.start(kind, kFile);
        deliver(formatTtsFile("half a file"));
        log_.clock.seconds += 5;
        EXPECT_FALSE(fetcher_.poll(form));
        log_.clock.seconds += 1;
        EXPECT_TRUE(fetcher_.poll(form));
        EXPECT_EQ(form.responseLine(), strings_.text(isEmail ? IDS_EMAIL_ERROR : IDS_TTS_ERROR));
        EXPECT_EQ(form.spokenText(), "");
        EXPECT_EQ(form.email().to, "");
    }
}

TEST_F(PayloadFetcherTest, WhatArrivesForAnotherResponseLeavesTheResponseLine) {
    for (const bool arrives : {true, false}) {
        EventForm form = load(Response::kTtsMessage);
        fetcher_.start(PayloadFetch::kSpokenText, kFile);
        form.chooseResponse(1);
        const std::string line = form.responseLine();
        if (arrives) deliver(formatTtsFile("mine"));
        if (arrives) deliver("");
        log_.clock.seconds += 6;
        EXPECT_TRUE(fetcher_.poll(form));
        EXPECT_EQ(form.responseLine(), line);
        EXPECT_EQ(form.spokenText(), arrives ? "mine" : "");
    }
}

TEST_F(PayloadFetcherTest, ARefusedReadIsAnEmptyFile) {
    link_.refused = "KSFileRead";
    EventForm form = load(Response::kTtsMessage);
    EXPECT_FALSE(fetcher_.start(PayloadFetch::kSpokenText, "no guid"));
    journal_.take();
    EXPECT_TRUE(fetcher_.poll(form)) << "at once";
    EXPECT_EQ(form.responseLine(), "Say 'Empty'");
    EXPECT_EQ(journal_.take(), "log: getTtsMessage: LoadXml failed");
    link_.refused.clear();
    fetcher_.start(PayloadFetch::kSpokenText, kFile);
    EXPECT_FALSE(fetcher_.poll(form)) << "the refusal does not stand for the next file";
}

TEST_F(PayloadFetcherTest, WhatBelongsToAnotherFileIsIgnored) {
    EventForm form = load(Response::kTtsMessage);
    const std::string givenUp = "{11111111-0000-0000-0000-000000000000}";
    fetcher_.start(PayloadFetch::kSpokenText, givenUp);
    deliver("<ORVS", givenUp);
    fetcher_.start(PayloadFetch::kSpokenText, kFile);
    deliver("EventFile>", givenUp);
    deliver("", givenUp);
    EXPECT_FALSE(fetcher_.poll(form));
    deliver(formatTtsFile("mine"));
    deliver("");
    EXPECT_TRUE(fetcher_.poll(form));
    EXPECT_EQ(form.spokenText(), "mine");
}

TEST_F(PayloadFetcherTest, ABrokenPayloadLeavesTheEventToBeEnteredAgain) {
    // A double quote in the subject makes a file that cannot be read.
    EventForm form = load(Response::kEmail);
    fetcher_.start(PayloadFetch::kEmail, kFile);
    deliver(formatEmailFile({"f", "t", "", "", "\"s\"", "b"}));
    deliver("");
    EXPECT_TRUE(fetcher_.poll(form));
    EXPECT_EQ(form.responseLine(), "To '', ''");
    EXPECT_TRUE(form.enabling().select);
    EXPECT_FALSE(form.enabling().save);
}

}  // namespace
}  // namespace orvc
