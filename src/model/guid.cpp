#include "model/guid.h"

#include <cstdio>

#include "support/text.h"

namespace orvc {

std::string formatGuid(const KSGuid& guid) {
    const auto& d = guid.data4;
    return formatText("{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", guid.data1, guid.data2, guid.data3, d[0],
                      d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
}

KSGuid makeGUID(const std::string& text, TrackingLog& log) {
    unsigned data1 = 0;
    unsigned data2 = 0;
    unsigned data3 = 0;
    unsigned d[8];
    const int count = std::sscanf(text.c_str(), "{%x-%x-%x-%02x%02x-%02x%02x%02x%02x%02x%02x}", &data1, &data2, &data3,
                                  &d[0], &d[1], &d[2], &d[3], &d[4], &d[5], &d[6], &d[7]);
    KSGuid guid;
    if (count != 11) {
        log.log("makeGUID: Invalid guid to convert '%s'", text.c_str());
        return guid;
    }
    guid.data1 = data1;
    guid.data2 = static_cast<std::uint16_t>(data2);
    guid.data3 = static_cast<std::uint16_t>(data3);
    for (std::size_t i = 0; i < guid.data4.size(); ++i)
        guid.data4[i] = static_cast<std::uint8_t>(d[i]);
    return guid;
}

std::string newGuidText(const GuidMaker& makeNew) {
    return formatGuid(makeNew());
}

}  // namespace orvc
