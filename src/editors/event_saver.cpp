#include "editors/event_saver.h"

#include <utility>

#include "model/guid.h"

namespace orvc {
namespace {

void deleteOldFile(const EventRecord& record, ServerLink& link, TrackingLog& log) {
    const std::string guid = record.fileGuid.value_or(std::string());
    if (guid.empty()) return;
    const bool deleted = link.deleteFile(makeGUID(guid, log)) == 0;
    log.log(deleted ? "fillEvent: Deleted file GUID '%s'" : "fillEvent: Failed to delete file GUID '%s'", guid.c_str());
}

// The GUID text of a new file; empty when the server makes none.
std::string createFile(ServerLink& link, TrackingLog& log) {
    KSGuid created;
    if (link.createFile(created) != 0) {
        log.log("fileEvent: Failed to create a file");
        return {};
    }
    std::string guid = formatGuid(created);
    log.log("fileEvent: Created GUID %s", guid.c_str());
    return guid;
}

}  // namespace

void fillEvent(const EventForm& form, EventRecord& record, ServerLink& link, TrackingLog& log,
               const GuidMaker& makeNew) {
    // Filled in before anything is deleted on the server: there may be no memory for it.
    EventRecord filled = record;
    if (filled.key.empty()) filled.key = newGuidText(makeNew);
    form.fill(filled);
    deleteOldFile(record, link, log);
    record = std::move(filled);
    if (form.response() == Response::kTtsMessage) {
        record.fileGuid = createFile(link, log);
        writeEventFileTts(link, log, *record.fileGuid, form.spokenText());
    } else if (form.response() == Response::kEmail) {
        record.fileGuid = createFile(link, log);
        EventEmail email = form.email();
        email.cc.clear();
        email.bc.clear();
        writeEventFileEmail(link, log, *record.fileGuid, email);
    }
}

}  // namespace orvc
