#include "session/gate.h"

#include <algorithm>
#include <utility>

#include "model/guid.h"
#include "model/variable_path.h"

namespace orvc {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::int64_t kEchoPatience = 5;  // seconds
constexpr std::uint32_t kBad = 1;

const char* writerOf(PayloadKind kind) {
    return kind == PayloadKind::kEmail ? "writeEventFileEmail" : "writeEventFileTts";
}

bool wasMarkedBad(const std::optional<EventRecord>& before, const Directory& directory) {
    return before && (before->badData == kBad || !isEventValid(*before, directory));
}

}  // namespace

Gate::Gate(ServerWriter& writer, const ConfigurationRecords& records, TrackingLog& log, const Clock& clock)
    : writer_(writer), records_(records), log_(log), clock_(clock) {}

// ---------------------------------------------------------------------------------------------------------------------
// Jobs

Gate::Ticket Gate::apply(std::vector<Change> changes, Done done) {
    Job job;
    job.ticket = ++lastTicket_;
    job.results.resize(changes.size());
    job.changes = std::move(changes);
    job.done = std::move(done);
    jobs_.push_back(std::move(job));
    step();
    return lastTicket_;
}

Gate::Job* Gate::findJob(Ticket ticket) {
    const auto found = std::ranges::find(jobs_, ticket, &Job::ticket);
    return found != jobs_.end() ? &*found : nullptr;
}

void Gate::cancel(Ticket ticket) {
    Job* const job = findJob(ticket);
    if (job == nullptr) return;
    for (; job->written < job->changes.size(); ++job->written)
        job->results[job->written].outcome = Outcome::kCancelled;
}

std::optional<Gate::Progress> Gate::progress(Ticket ticket) const {
    const auto job = std::ranges::find(jobs_, ticket, &Job::ticket);
    if (job == jobs_.end()) return std::nullopt;
    return Progress{job->written, job->changes.size()};
}

bool Gate::step(std::chrono::milliseconds budget) {
    const auto end = SteadyClock::now() + budget;
    const auto unwritten = [](const Job& job) { return job.written < job.changes.size(); };
    for (auto job = std::ranges::find_if(jobs_, unwritten); job != jobs_.end();
         job = std::ranges::find_if(jobs_, unwritten)) {
        writeNext(*job);
        if (SteadyClock::now() >= end) break;
    }
    giveUpOverdue();
    return std::ranges::any_of(jobs_, unwritten);
}

void Gate::writeNext(Job& job) {
    ChangeResult& result = job.results[job.written];
    std::visit([&](auto& change) { write(change, result, job); }, job.changes[job.written]);
    job.deadline = clock_.now() + kEchoPatience;
    job.filesDone = false;
    ++job.written;
}

// `done` may begin the next job.
void Gate::finish(std::list<Job>::iterator job) {
    const Done done = std::move(job->done);
    const std::vector<ChangeResult> results = std::move(job->results);
    jobs_.erase(job);
    if (done) done(results);
}

void Gate::giveUpOverdue() {
    const std::int64_t now = clock_.now();
    const auto isOver = [now](const Job& job) {
        return job.written == job.changes.size() && (job.awaited == 0 || now > job.deadline);
    };
    for (auto job = std::ranges::find_if(jobs_, isOver); job != jobs_.end();
         job = std::ranges::find_if(jobs_, isOver)) {
        const Ticket ticket = job->ticket;
        for (auto entry = echoes_.begin(); job->awaited > 0 && entry != echoes_.end();) {
            std::erase_if(entry->second, [&](const Echo& echo) {
                if (echo.ticket != ticket) return false;
                log_.log("applyChanges: '%s' did not come back from the server", entry->first.c_str());
                ChangeResult& result = job->results[echo.change];
                if (result.outcome == Outcome::kStored) result.outcome = Outcome::kNoEcho;
                result.notStored.push_back(entry->first);
                return true;
            });
            entry = entry->second.empty() ? echoes_.erase(entry) : std::next(entry);
        }
        // The echo of a deletion stays expected, however late it comes.
        for (const auto& [path, deletions] : deletions_)
            for (const Echo& echo : deletions) {
                ChangeResult* const result = echo.ticket == ticket ? &job->results[echo.change] : nullptr;
                if (result == nullptr) continue;
                log_.log("applyChanges: The deletion of '%s' did not come back from the server", path.c_str());
                if (result->outcome == Outcome::kStored) result->outcome = Outcome::kNoEcho;
                result->notStored.push_back(path);
            }
        finish(job);
    }
}

void Gate::linkLost() {
    echoes_.clear();
    deletions_.clear();
    std::list<Job> lost;
    lost.swap(jobs_);
    for (Job& job : lost) {
        for (ChangeResult& result : job.results)
            if (result.outcome == Outcome::kStored) result.outcome = Outcome::kLinkLost;
        if (job.done) job.done(job.results);
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// Writing

void Gate::check(std::int32_t code, const std::string& what, ChangeResult& result) {
    if (code == 0) return;
    log_.log("applyChanges: '%s' was refused (result %d)", what.c_str(), code);
    result.outcome = Outcome::kRefused;
    result.notStored.push_back(what);
}

void Gate::write(EventChange& change, ChangeResult& result, Job& job) {
    if (!change.after) {
        if (change.before) removeEvent(*change.before, result, job);
        return;
    }
    if (!change.onlyField.empty()) return writeField(change, result, job);
    if (!job.filesDone) replacePayload(change, result);
    job.filesDone = true;
    EventRecord& after = *change.after;
    const bool clearMark = wasMarkedBad(change.before, records_.directory);
    if (clearMark) after.badData = 0;
    after.completeBits = 1;
    const EventRecord& stored = records_.events.store(after);
    const VariableValues values = eventValues(stored, clearMark);
    const std::string path = joinPath(kEventsPath, after.key);
    check(writer_.createKey(path, true), path, result);
    writeValues(values, result, job);
}

void Gate::writeField(const EventChange& change, ChangeResult& result, Job& job) {
    const EventRecord* const current = records_.events.findAny(change.after->key);
    if (current == nullptr) {
        result.outcome = Outcome::kGone;
        return;
    }
    EventRecord record = *current;
    copyEventField(record, *change.after, change.onlyField);
    record.completeBits = 1;
    writeValues(eventFieldValues(records_.events.store(record), change.onlyField), result, job);
}

// The Event names its new file from here on; none when the server made none.
void Gate::replacePayload(EventChange& change, ChangeResult& result) {
    const std::string old = change.before ? change.before->fileGuid.value_or(std::string()) : std::string();
    EventRecord& after = *change.after;
    after.fileGuid = std::string();
    if (!old.empty()) {
        const bool deleted = writer_.deleteFile(makeGUID(old, log_)) == 0;
        log_.log(deleted ? "fillEvent: Deleted file GUID '%s'" : "fillEvent: Failed to delete file GUID '%s'",
                 old.c_str());
    }
    if (change.payload.kind == PayloadKind::kNone) return;
    KSGuid created;
    if (writer_.createFile(created) == 0) {
        after.fileGuid = formatGuid(created);
        log_.log("fileEvent: Created GUID %s", after.fileGuid->c_str());
    } else {
        log_.log("fillEvent: Failed to create a file");
        result.outcome = Outcome::kRefused;
        result.notStored.emplace_back("payload file");
    }
    if (writer_.writeFile(makeGUID(*after.fileGuid, log_), change.payload.bytes) == 0) return;
    log_.log("%s: Failed to write to GUID %s", writerOf(change.payload.kind), after.fileGuid->c_str());
    result.outcome = Outcome::kRefused;
    result.notStored.emplace_back("payload file");
}

void Gate::removeEvent(const EventRecord& before, ChangeResult& result, Job& job) {
    const std::string guid = before.fileGuid.value_or(std::string());
    if (!job.filesDone && !guid.empty()) {
        const std::int32_t code = writer_.deleteFile(makeGUID(guid, log_));
        check(code, "payload file " + guid, result);
    }
    job.filesDone = true;
    if (EventRecord* const record = records_.events.findAny(before.key)) records_.events.remove(*record);
    removeKey(joinPath(kEventsPath, before.key) + "\\", result, job);
}

void Gate::write(const ScheduleChange& change, ChangeResult& result, Job& job) {
    if (change.after) {
        writeValues(scheduleValues(records_.schedules.store(*change.after)), result, job);
        return;
    }
    const std::string key = change.before ? change.before->key.value_or("") : std::string();
    if (key.empty()) return;
    if (const ScheduleRecord* const record = records_.schedules.find(key)) records_.schedules.remove(*record);
    removeKey(joinPath(kSchedulesPath, key) + "\\", result, job);
}

// What was not changed is written as it is by now.
void Gate::write(const MailChange& change, ChangeResult& result, Job& job) {
    MailSettings& mail = records_.mail;
    mail.takeChanges(change.before, change.after);
    const VariableValues values = mail.values();
    check(writer_.createKey(std::string(kRootPath), true), std::string(kRootPath), result);
    writeValues(values, result, job);
}

void Gate::writeValues(const VariableValues& values, ChangeResult& result, Job& job) {
    const auto index = static_cast<std::size_t>(&result - job.results.data());
    for (const VariableValue& written : values) {
        // Expected before it is written, while that can still fail.
        std::vector<Echo>& expected = echoes_[written.name];
        expected.push_back({written.text, written.number, job.ticket, index});
        const std::int32_t code = written.text ? writer_.setText(written.name, *written.text)
                                               : writer_.setDword(written.name, written.number);
        if (code == 0) {
            ++job.awaited;
            continue;
        }
        expected.pop_back();
        if (expected.empty()) echoes_.erase(written.name);
        check(code, written.name, result);
    }
}

void Gate::removeKey(const std::string& path, ChangeResult& result, Job& job) {
    const auto index = static_cast<std::size_t>(&result - job.results.data());
    std::vector<Echo>& expected = deletions_[path];
    expected.push_back({std::nullopt, 0, job.ticket, index});
    const std::int32_t code = writer_.createKey(path, false);
    if (code == 0) {
        ++job.awaited;
        return;
    }
    expected.pop_back();
    if (expected.empty()) deletions_.erase(path);
    check(code, path, result);
}

// ---------------------------------------------------------------------------------------------------------------------
// Echoes

void Gate::observe(const Variable& variable) {
    constexpr std::uint32_t kDeletedOrValue = variable_type::kDeleted | variable_type::kValue;
    if (echoes_.empty() || (variable.type & kDeletedOrValue) != variable_type::kValue) return;
    const auto found = echoes_.find(variable.name);
    if (found == echoes_.end()) return;
    std::vector<Echo>& expected = found->second;
    // Another value was written by another console. One of ours settles those before it too: they were written over.
    const auto own = std::ranges::find_if(expected, [&](const Echo& echo) {
        return echo.text ? variable.text.value_or(std::string_view()) == *echo.text : variable.number == echo.number;
    });
    if (own == expected.end()) return;
    std::for_each(expected.begin(), own + 1, [this](const Echo& echo) { settle(echo); });
    expected.erase(expected.begin(), own + 1);
    if (expected.empty()) echoes_.erase(found);
}

bool Gate::isForeignDeletion(std::string_view path) {
    const auto found = deletions_.find(path);
    if (found == deletions_.end()) return true;
    settle(found->second.front());
    found->second.erase(found->second.begin());
    if (found->second.empty()) deletions_.erase(found);
    return false;
}

void Gate::settle(const Echo& echo) {
    if (Job* const job = findJob(echo.ticket)) --job->awaited;
}

}  // namespace orvc
