#include "lists/event_texts.h"

#include <algorithm>
#include <new>
#include <utility>

namespace orvc {
namespace {

// Between name and time: no text that comes from the server or from a filter holds it.
constexpr char kSeparator = '\0';
constexpr std::size_t kSpareBytes = 64 * 1024;
constexpr std::size_t kSpareTexts = 4096;

}  // namespace

EventTexts::EventTexts(const EventTextSource& source, TextFolder fold, SortKeyMaker makeSortKey)
    : source_(source), pool_(std::move(fold), std::move(makeSortKey)) {}

// ---------------------------------------------------------------------------------------------------------------------
// Rows

void EventTexts::add(Slot slot, const EventRecord& record) {
    if (slot >= rows_.size()) {
        verdicts_.resize(slot + 1);
        rows_.resize(slot + 1);
    }
    rows_[slot].record = &record;
    changed(slot, false);
}

void EventTexts::changed(Slot slot, bool renamed) {
    rows_[slot].isFresh = false;
    rows_[slot].isRenamed |= renamed;
    verdicts_[slot] = Verdict::kUnknown;
    unprepared_ = std::min(unprepared_, slot);
    if (!scheduleNames_.empty()) scheduleNames_.clear();
}

void EventTexts::allChanged() {
    for (Row& row : rows_)
        row.isFresh = false;
    std::ranges::fill(verdicts_, Verdict::kUnknown);
    unprepared_ = 0;
    byCode_.clear();
    scheduleNames_.clear();
}

void EventTexts::forget(Slot slot) {
    ownUsed_ -= rows_[slot].ownSize;
    rows_[slot] = {};
    verdicts_[slot] = Verdict::kUnknown;
    if (!scheduleNames_.empty()) scheduleNames_.clear();
}

void EventTexts::clear() {
    rows_.clear();
    verdicts_.clear();
    unprepared_ = 0;
    own_.clear();
    ownUsed_ = 0;
    byCode_.clear();
    scheduleNames_.clear();
    pool_.clear();
    poolAfterLastCare_ = 0;
    if (matcher_) matcher_->reset();
}

bool EventTexts::prepare(std::size_t most) {
    for (std::size_t done = 0; unprepared_ < rows_.size(); ++unprepared_) {
        Row& row = rows_[unprepared_];
        if (row.record == nullptr || row.isFresh) continue;
        if (done++ == most) return true;
        refresh(row);
    }
    return false;
}

const EventValues& EventTexts::values(Slot slot) {
    refresh(rows_[slot]);
    return rows_[slot].values;
}

std::vector<EventValues> EventTexts::allValues() {
    std::vector<EventValues> values(rows_.size());
    for (std::size_t slot = 0; slot < rows_.size(); ++slot) {
        if (rows_[slot].record == nullptr) continue;
        refresh(rows_[slot]);
        values[slot] = rows_[slot].values;
    }
    return values;
}

std::vector<const EventRecord*> EventTexts::renamed() const {
    std::vector<const EventRecord*> renamed;
    for (const Row& row : rows_)
        if (row.isRenamed) renamed.push_back(row.record);
    return renamed;
}

void EventTexts::forgetRenamed() {
    for (Row& row : rows_)
        row.isRenamed = false;
}

void EventTexts::refresh(Row& row) {
    if (row.isFresh) return;
    const EventRecord& record = *row.record;
    for (std::size_t i = 0; i < kSharedColumns.size(); ++i)
        row.values.texts[i] = textOf(kSharedColumns[i], record);
    row.values.lastTriggered = record.lastTriggered.value_or(0);
    row.values.delay = eventDelay(record);
    row.values.status = eventStatus(record, source_);
    row.values.hasProblem = source_.hasProblem && source_.hasProblem(record);
    const TextFolder& fold = pool_.folder();
    setOwn(row, fold(eventColumn(EventColumnId::kName).text(record, source_)) + kSeparator +
                    fold(eventColumn(EventColumnId::kLastEvent).text(record, source_)));
    row.isFresh = true;
}

TextPool::Id EventTexts::textOf(EventColumnId column, const EventRecord& record) {
    const EventColumn& each = eventColumn(column);
    if (column == EventColumnId::kSchedule) return scheduleOf(record);
    const auto code = each.code != nullptr ? each.code(record, source_) : std::nullopt;
    if (!code) return pool_.intern(each.text(record, source_));
    const std::uint64_t key = static_cast<std::uint64_t>(column) << 32 | *code;
    if (const auto known = byCode_.find(key); known != byCode_.end()) return known->second;
    const TextPool::Id id = pool_.intern(each.text(record, source_));
    byCode_.emplace(key, id);
    return id;
}

// Looking for a Schedule takes a step for each of them: while many rows are worked out, each is looked for once.
TextPool::Id EventTexts::scheduleOf(const EventRecord& record) {
    if (!record.scheduleKey) return 0;
    const auto [known, isNew] = scheduleNames_.try_emplace(*record.scheduleKey, 0);
    if (!isNew) return known->second;
    try {
        known->second = pool_.intern(eventColumn(EventColumnId::kSchedule).text(record, source_));
    } catch (...) {
        scheduleNames_.erase(known);
        throw;
    }
    return known->second;
}

// A text that is no longer than the one before takes its place; a longer one goes to the end.
void EventTexts::setOwn(Row& row, const std::string& text) {
    const auto size = static_cast<std::uint32_t>(text.size());
    if (size > row.ownSize) {
        if (own_.size() > 2 * ownUsed_ + kSpareBytes) compactOwn();
        own_.append(text);
        row.ownAt = static_cast<std::uint32_t>(own_.size() - size);
    } else {
        std::ranges::copy(text, own_.begin() + row.ownAt);
    }
    ownUsed_ = ownUsed_ - row.ownSize + size;
    row.ownSize = size;
}

void EventTexts::compactOwn() {
    std::string compact;
    compact.reserve(ownUsed_ + ownUsed_ / 4);
    for (Row& row : rows_) {
        const std::string_view text = own(row);
        const auto at = static_cast<std::uint32_t>(compact.size());
        compact.append(text);
        row.ownAt = at;
    }
    own_ = std::move(compact);
}

// ---------------------------------------------------------------------------------------------------------------------
// Filter

void EventTexts::filterBy(EventMatcher matcher) {
    matcher_.reset();
    if (matcher.isEmpty()) return;
    matcher_.emplace(std::move(matcher));
    std::ranges::fill(verdicts_, Verdict::kUnknown);
    for (Slot slot = 0; slot < rows_.size(); ++slot)
        if (rows_[slot].record != nullptr) judge(slot);
}

void EventTexts::judge(Slot slot) {
    Row& row = rows_[slot];
    refresh(row);
    const bool passes = !matcher_ || matcher_->matches(row.values, own(row), pool_);
    verdicts_[slot] = passes ? Verdict::kPasses : Verdict::kFails;
}

bool EventTexts::passes(Slot slot) noexcept {
    try {
        if (verdicts_[slot] == Verdict::kUnknown) judge(slot);
        return verdicts_[slot] == Verdict::kPasses;
    } catch (const std::bad_alloc&) {
        return true;
    }
}

void EventTexts::forgetUnused(std::span<EventValues> others) {
    if (pool_.size() < 2 * poolAfterLastCare_ + kSpareTexts) return;
    std::vector<TextPool::Id> numbers(pool_.size());
    const auto forEach = [&](const auto& work) {
        for (Row& row : rows_)
            for (TextPool::Id& text : row.values.texts)
                work(text);
        for (EventValues& values : others)
            for (TextPool::Id& text : values.texts)
                work(text);
    };
    forEach([&](TextPool::Id text) { numbers[text] = 1; });
    pool_.keepOnly(numbers);
    forEach([&](TextPool::Id& text) { text = numbers[text]; });
    byCode_.clear();
    scheduleNames_.clear();
    poolAfterLastCare_ = pool_.size();
    if (matcher_) matcher_->reset();
}

}  // namespace orvc
