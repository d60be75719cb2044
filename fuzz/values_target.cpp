// MAC addresses and GUIDs of any text.
#include "fuzz/input.h"
#include "fuzz/silent_log.h"
#include "model/guid.h"
#include "model/mac.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvc;
    Input input(data, size);
    const std::string text(input.rest());
    SilentLog silent;
    if (const auto mac = parseMac(text)) require(parseMac(formatMac(*mac)) == mac, "a written address reads as it was");
    const KSGuid guid = makeGUID(text, silent.log);
    const std::string written = formatGuid(guid);
    require(written.size() == 38, "GUIDs have one length");
    require(makeGUID(written, silent.log) == guid, "a written GUID reads as it was");
    return 0;
}
