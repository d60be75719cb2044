#include "link/server_link.h"

#include <gtest/gtest.h>

namespace orvc {
namespace {

// What a complete library is called with, the demo server's trace shows; here is what happens without one.
TEST(KSServerLink, NothingIsCalledThroughANullPointer) {
    KSServerLink noLibrary;
    KSServerLink onlyOpen;
    KSLibrary library;
    library.KSOpen = [](std::uint32_t* handle, std::uint32_t* flags, KSEventCallback, std::uint32_t*) {
        *handle = 0x77;
        *flags |= kConsoleModeFlag;
        return 0;
    };
    bool freed = false;
    onlyOpen.adoptLibrary(library, [&] { freed = true; });
    for (KSServerLink* link : {&noLibrary, &onlyOpen}) {
        link->open(nullptr);
        EXPECT_EQ(link->start({}, "admin", "pw").code, -1);
        for (const std::int32_t result : {link->getMessages(), link->setText("\\K", "t"), link->stop(), link->close()})
            EXPECT_EQ(result, -1);
    }
    EXPECT_FALSE(noLibrary.isOpen() || noLibrary.isConsoleMode());
    EXPECT_TRUE(onlyOpen.isOpen() && onlyOpen.isConsoleMode());
    onlyOpen.unload();
    EXPECT_TRUE(freed && !onlyOpen.isOpen() && !onlyOpen.isLoaded());
}

}  // namespace
}  // namespace orvc
