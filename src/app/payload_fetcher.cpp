#include "app/payload_fetcher.h"

#include "model/guid.h"

namespace orvc {
namespace {

constexpr std::int64_t kPatience = 5;  // seconds

}  // namespace

PayloadFetcher::PayloadFetcher(ServerLink& link, FileReader& reader, TrackingLog& log, const Clock& clock)
    : link_(link), reader_(reader), log_(log), clock_(clock) {}

bool PayloadFetcher::start(PayloadFetch kind, const std::string& guidText) {
    kind_ = kind;
    const KSGuid file = makeGUID(guidText, log_);
    reader_.expect(file);
    if (kind == PayloadFetch::kEmail) log_.log("DoGetEmailFile: Getting file with GUID %s", guidText.c_str());
    const bool accepted = link_.readFile(file) == 0;
    deadline_ = clock_.now() + kPatience;
    if (!accepted) reader_.append(file, {});
    return accepted;
}

bool PayloadFetcher::poll(EventForm& form) {
    if (!reader_.isComplete() && clock_.now() <= deadline_) return false;
    if (!reader_.isComplete())
        form.failFetch(kind_);
    else if (kind_ == PayloadFetch::kEmail)
        form.takeFetchedEmail(processConfigurationFile(reader_.bytes(), log_));
    else
        form.takeFetchedText(getTtsMessage(reader_.bytes(), log_));
    reader_.clear();
    return true;
}

}  // namespace orvc
