#include "link/ks_library.h"

#include <gtest/gtest.h>

#include "journal.h"

namespace orvc {
namespace {

constexpr const char* kNames =
    "KSOpen; KSClose; KSStart; KSStop; KSDllVersion; KSSetDebug; KSDisconnect; KSCreateGroup; KSDeleteGroup; "
    "KSGetGroupMembers; KSGetMessages; KSSelectIntercom; KSStartAudio; KSSendAudio; KSEndAudio; KSPlayServerAudio; "
    "KSGetGPIOValues; KSSetGPIOValue; KSiComCount; KSFirstIcom; KSNextIcom; KSGetIcom; KSOpenDoor; KSSetVolume; "
    "KSForwardIcom; KSRetrieveIcom; KSListenIcom; KSDeleteServerCQ; KSTransferAudio; KSPlayTones; "
    "KSSetMulticastFeatures; KSResetConnection; KSSayText; KSResendSettings; KSRTPStart; KSRTPStartMicTo; "
    "KSRTPStartSpeakerFrom; KSRTPStop; KSRTPStopMic; KSRTPStopSpeaker; KSSysVarCreateKey; KSSysVarSubscribe; "
    "KSSysVarSetValue; KSSysVarGetValue; KSSysVarDeleteValue; KSFileCreate; KSFileRead; KSFileWrite; KSFileDelete; "
    "KSFileInfo";

TEST(KSLibrary, EveryNameIsLookedUpInOrderEvenBehindAMissingOne) {
    for (const std::string missing : {"", "KSOpen", "KSRTPStop", "KSFileInfo"}) {
        char entryPoints[50];
        int count = 0;
        Journal lookedUp;
        KSLibrary library;
        const bool complete = bindEntryPoints(library, [&](const char* name) -> void* {
            lookedUp.add(name);
            return ++count, name == missing ? nullptr : &entryPoints[count - 1];
        });
        EXPECT_EQ(complete, missing.empty());
        EXPECT_EQ(lookedUp.take(), kNames);
        EXPECT_EQ(library.KSOpen == nullptr, missing == "KSOpen");
        EXPECT_EQ(library.KSFileInfo == nullptr, missing == "KSFileInfo");
        EXPECT_EQ(reinterpret_cast<void*>(library.KSSysVarSetValue), &entryPoints[42]);
    }
}

}  // namespace
}  // namespace orvc
