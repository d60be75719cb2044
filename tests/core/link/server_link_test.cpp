#include "link/server_link.h"

#include <gtest/gtest.h>

#include "journal.h"
#include "support/text.h"

namespace orvc {
namespace {

Journal journal;

void KS_CALL onEvent(std::uint32_t, std::int32_t, const void*, const void*) {}

std::string shown(std::uint32_t number) {
    return formatText("%x", number);
}
std::string shown(const char* text) {
    return text;
}
std::string shown(const KSGuid& guid) {
    return shown(guid.data1);
}
std::string shown(const KSGroupRecord* group) {
    return "group " + shown(group->groupId);
}
std::string shown(const KSSocketAddress* to) {
    return formatText("%u/%04x/%08x", to->family, to->port, to->address);
}
std::string shown(const void*) {
    return "bytes";
}
std::string shown(KSEventCallback) {
    return "callback";
}

// An entry point that writes its arguments down and fails in its own way.
template <auto Member>
struct Recorder;
template <typename... Arguments, std::int32_t (KS_CALL* KSLibrary::*Member)(Arguments...)>
struct Recorder<Member> {
    static inline const char* name = nullptr;
    static std::int32_t KS_CALL call(Arguments... arguments) {
        std::string entry = name;
        ((entry += " " + shown(arguments)), ...);
        journal.add(entry);
        return -7;
    }
};

// A library all of whose entry points do so.
KSLibrary makeLibrary() {
    KSLibrary library;
#define RECORD(entry, parameters)                \
    Recorder<& KSLibrary::entry>::name = #entry; \
    library.entry = &Recorder<&KSLibrary::entry>::call;
    ORVC_KS_ENTRY_POINTS(RECORD)
#undef RECORD
    library.KSOpen = [](std::uint32_t* handle, std::uint32_t* flags, KSEventCallback callback, std::uint32_t* word) {
        journal.add(formatText("KSOpen %u %d", *flags, callback == &onEvent));
        *handle = 0x77;
        *flags = 17;
        *word = 0xABCD;
        return -7;
    };
    library.KSStart = [](std::uint32_t handle, const KSSocketAddress* to, std::uint32_t kept, const char* logonId,
                         const char* password, std::uint32_t* word, std::uint32_t* admin) {
        journal.add(formatText("KSStart %x %s %u '%s' '%s'", handle, shown(to).c_str(), kept, logonId, password));
        *word = 0xABCD;
        *admin = std::string_view(logonId) == "admin" ? 8 : 0;
        return *admin != 0 ? 0 : -30;
    };
    library.KSSysVarSetValue = [](std::uint32_t, const char* name, std::uint32_t type, const void* value,
                                  std::uint32_t length) {
        std::string entry = formatText("KSSysVarSetValue %s %08x", name, type);
        for (const unsigned char byte : std::string_view(static_cast<const char*>(value), length))
            entry += formatText(" %02x", byte);
        journal.add(entry);
        return -7;
    };
    return library;
}

// Makes every call that needs an open link; returns how many answered `result`.
int callEverything(KSServerLink& link, std::int32_t result) {
    const KSGroupRecord group{.groupId = 9};
    KSGuid file;
    const std::int32_t results[] = {link.createGroup(group),
                                    link.deleteGroup(9),
                                    link.getGroupMembers(9),
                                    link.getMessages(),
                                    link.resendSettings(),
                                    link.createKey("\\K", true),
                                    link.createKey("\\K\\", false),
                                    link.subscribe("\\K\\"),
                                    link.setText("\\K\\t", "a\xE9"),
                                    link.setText("\\K\\t", ""),
                                    link.setDword("\\K\\d", 0xFFFFFFFE),
                                    link.createFile(file),
                                    link.readFile({0xAB, 0, 0, {}}),
                                    link.writeFile({0xAB, 0, 0, {}}, {"bytes and more", 5}),
                                    link.deleteFile({0xAB, 0, 0, {}}),
                                    link.stop(),
                                    link.close()};
    return static_cast<int>(std::count(std::begin(results), std::end(results), result));
}

TEST(KSServerLink, EveryCallPassesItsArgumentsAsTheLibraryTakesThem) {
    KSServerLink link;
    link.adoptLibrary(makeLibrary(), [] { journal.add("free library"); });
    EXPECT_EQ(link.flags(), 16u);
    link.open(&onEvent);
    EXPECT_TRUE(link.isOpen() && link.isConsoleMode() && link.canStart());
    link.enableDebug();
    const KSSocketAddress address{.port = 0xC20B, .address = 0x0100007F};
    EXPECT_EQ(link.start(address, "op", "").code, -30);
    EXPECT_TRUE(link.start(address, "admin", "pw").isAdministrator);
    EXPECT_EQ(callEverything(link, -7), 17);
    EXPECT_EQ(journal.take(),
              "KSOpen 16 1; KSSetDebug 1; KSStart 77 2/c20b/0100007f 0 'op' ''; KSStart 77 2/c20b/0100007f 0 'admin' "
              "'pw'; KSCreateGroup 77 group 9 0 0 1; KSDeleteGroup 77 9; KSGetGroupMembers 77 9; KSGetMessages 77; "
              "KSResendSettings 77; KSSysVarCreateKey 77 \\K 80000000 1; KSSysVarCreateKey 77 \\K\\ 80000000 0; "
              "KSSysVarSubscribe 77 \\K\\ 0 1; KSSysVarSetValue \\K\\t c0000001 61 e9; KSSysVarSetValue \\K\\t "
              "c0000001; KSSysVarSetValue \\K\\d c0000004 fe ff ff ff; KSFileCreate 77 bytes; KSFileRead 77 ab; "
              "KSFileWrite 77 ab bytes 5; KSFileDelete 77 ab; KSStop 77; KSClose 77");
    link.unload();
    link.unload();
    EXPECT_EQ(journal.take(), "free library");
    EXPECT_FALSE(link.isOpen() || link.isLoaded() || link.canStart());
    EXPECT_EQ(callEverything(link, -1), 17);
    EXPECT_EQ(journal.take(), "");
}

TEST(KSServerLink, NothingIsCalledThroughANullPointer) {
    KSServerLink noLibrary, onlyOpen;
    KSLibrary library;
    library.KSOpen = makeLibrary().KSOpen;
    onlyOpen.adoptLibrary(library, [] {});
    for (KSServerLink* link : {&noLibrary, &onlyOpen}) {
        link->open(&onEvent);
        link->enableDebug();
        EXPECT_FALSE(link->readVersion().has_value());
        EXPECT_EQ(link->start({}, "admin", "pw").code, -1);
        EXPECT_EQ(callEverything(*link, -1), 17);
    }
    EXPECT_FALSE(noLibrary.isOpen() || noLibrary.isConsoleMode());
    EXPECT_EQ(journal.take(), "KSOpen 16 1");
}

}  // namespace
}  // namespace orvc
