#include "session/payload_fetcher.h"

#include <utility>

#include "model/guid.h"

namespace orvc {
namespace {

constexpr std::int64_t kPatience = 5;  // seconds

const char* routineOf(PayloadKind kind) {
    return kind == PayloadKind::kEmail ? "DoGetEmailFile" : "DoGetTtsFile";
}

}  // namespace

PayloadFetcher::PayloadFetcher(ServerReader& link, FileReader& reader, TrackingLog& log, const Clock& clock)
    : link_(link), reader_(reader), log_(log), clock_(clock) {}

bool PayloadFetcher::start(PayloadKind kind, const std::string& guidText) {
    guidText_ = guidText;
    kind_ = kind;
    if (kind == PayloadKind::kEmail) log_.log("DoGetEmailFile: Getting file with GUID %s", guidText.c_str());
    const KSGuid file = makeGUID(guidText, log_);
    reader_.expect(file);
    const bool accepted = link_.readFile(file) == 0;
    deadline_ = clock_.now() + kPatience;
    if (!accepted) {
        log_.log("%s: The server refused to read the file with GUID %s", routineOf(kind), guidText.c_str());
        reader_.append(file, {});
    }
    return accepted;
}

void PayloadFetcher::cancel(PayloadKind kind) {
    if (kind_ != kind) return;
    kind_ = PayloadKind::kNone;
    reader_.clear();
}

std::optional<FetchedPayload> PayloadFetcher::poll() {
    if (kind_ == PayloadKind::kNone) return std::nullopt;
    if (!reader_.isComplete() && clock_.now() <= deadline_) return std::nullopt;
    FetchedPayload fetched{kind_, reader_.isComplete()};
    if (!fetched.arrived)
        log_.log("%s: The server did not send the file with GUID %s in time", routineOf(kind_), guidText_.c_str());
    else if (kind_ == PayloadKind::kEmail)
        fetched.email = processConfigurationFile(reader_.bytes(), log_);
    else
        fetched.text = getTtsMessage(reader_.bytes(), log_);
    kind_ = PayloadKind::kNone;
    reader_.clear();
    return fetched;
}

}  // namespace orvc
