// MAC addresses and GUIDs as texts.
#include "fuzz/input.h"
#include "fuzz/silent_log.h"
#include "model/guid.h"
#include "model/mac.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvc;
    SilentLog silent;
    Input input(data, size);
    const std::string text(input.rest());

    if (const auto mac = parseMac(text)) {
        require(parseMac(formatMac(*mac)) == mac, "a written address reads as it was");
        require(formatMac(*mac).size() == 17 && formatMacTail(*mac).size() == 6, "addresses have one length");
    }
    const KSGuid guid = makeGUID(text, silent.log);
    const std::string written = formatGuid(guid);
    require(written.size() == 38, "GUIDs have one length");
    require(makeGUID(written, silent.log) == guid, "a written GUID reads as it was");

    // Any bytes are an address and a GUID too.
    KSMac mac{};
    KSGuid fromBytes;
    std::memcpy(mac.data(), data, std::min(size, sizeof mac));
    std::memcpy(&fromBytes, data, std::min(size, sizeof fromBytes));
    require(parseMac(formatMac(mac)) == mac, "every address can be written");
    require(makeGUID(formatGuid(fromBytes), silent.log) == fromBytes, "every GUID can be written");
    return 0;
}
