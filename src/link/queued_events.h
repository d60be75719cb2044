// What the event callback hands to the user-interface thread: self-contained copies of the library's event data.
#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "link/event_memory.h"
#include "link/ks_types.h"
#include "link/private_messages.h"

namespace orvc {

// The base of all events: owned by exactly one place at a time, first the callback, then the event queue, then the
// handler.
class QueuedEvent {
  public:
    QueuedEvent(std::uint32_t message, std::uintptr_t wParam) : message_(message), wParam_(wParam) {}
    virtual ~QueuedEvent() = default;
    QueuedEvent(const QueuedEvent&) = delete;
    QueuedEvent& operator=(const QueuedEvent&) = delete;
    static void* operator new(std::size_t size) { return event_memory::allocate(size); }
    static void operator delete(void* memory) { event_memory::release(memory); }

    std::uint32_t message() const { return message_; }
    std::uintptr_t wParam() const { return wParam_; }

  private:
    friend class EventChain;

    QueuedEvent* next_ = nullptr;
    std::uint32_t message_;
    std::uintptr_t wParam_;
};

// A event that holds one of the library's fixed-size records.
template <typename Record>
class RecordEvent final : public QueuedEvent {
  public:
    RecordEvent(std::uint32_t message, std::uintptr_t wParam, const Record& copied)
        : QueuedEvent(message, wParam), record(copied) {}
    Record record;
};

using GroupEvent = RecordEvent<KSGroupRecord>;
using MemberEvent = RecordEvent<KSMac>;  // wParam = group id
using CallQueueEvent = RecordEvent<KSQueueRecord>;
using ServerGroupEvent = RecordEvent<KSServerGroupRecord>;
using AudioMessageEvent = RecordEvent<KSMessageRecord>;

// The server has stopped: no payload. One is kept ready for a time without memory, so each lies by itself.
class StopEvent final : public QueuedEvent {
  public:
    StopEvent() : QueuedEvent(private_message::kServerStop, 0) {}
    static void* operator new(std::size_t size) { return ::operator new(size); }
    static void* operator new(std::size_t size, const std::nothrow_t& no) noexcept { return ::operator new(size, no); }
    static void operator delete(void* memory) { ::operator delete(memory); }
};

// Start the timer wParam with this period.
class TimerEvent final : public QueuedEvent {
  public:
    TimerEvent(std::uintptr_t timer, std::uint32_t milliseconds)
        : QueuedEvent(private_message::kStartTimer, timer), period(milliseconds) {}
    std::uint32_t period;
};

// A new or re-connected intercom; wParam = socket. `extra` is there when the event carried it.
class ConnectionEvent final : public QueuedEvent {
  public:
    ConnectionEvent(std::int32_t socket, const KSConnectionInfo& connection)
        : QueuedEvent(private_message::kNewIntercom, static_cast<std::uintptr_t>(socket)), info(connection) {}
    std::int32_t socket() const { return static_cast<std::int32_t>(wParam()); }
    KSConnectionInfo info;
    std::optional<KSExtraIntercomInfo> extra;
};

// A chunk of the file being read; empty = the file is complete.
class FileDataEvent final : public QueuedEvent {
  public:
    FileDataEvent(const KSGuid& guid, std::string chunk)
        : QueuedEvent(private_message::kFileData, 0), file(guid), bytes(std::move(chunk)) {}
    KSGuid file;
    std::string bytes;
};

// One variable notification, name and text included, in a single allocation: an installation sends a million of them.
class VariableEvent final : public QueuedEvent {
  public:
    // Copies both texts whole. `text` may be null. Throws std::bad_alloc.
    static std::unique_ptr<VariableEvent> make(const KSVariableNotification& notification);

    // Both zero-terminated; text() is null when the variable has no string value.
    const char* name() const { return texts(); }
    const char* text() const { return hasText_ ? texts() + nameLength_ + 1 : nullptr; }
    std::string_view nameView() const { return {name(), nameLength_}; }
    std::optional<std::string_view> textView() const {
        return hasText_ ? std::optional<std::string_view>({text(), textLength_}) : std::nullopt;
    }
    std::uint32_t type() const { return type_; }
    std::uint32_t number() const { return number_; }

  private:
    VariableEvent(const KSVariableNotification& notification, std::size_t nameLength, std::size_t textLength);
    const char* texts() const { return reinterpret_cast<const char*>(this + 1); }

    std::uint32_t type_;
    std::uint32_t number_;
    std::size_t nameLength_;
    std::size_t textLength_;
    bool hasText_;
};

// A first-in-first-out chain of events. Not synchronised; frees what it still holds.
class EventChain {
  public:
    EventChain() = default;
    EventChain(EventChain&& other) noexcept { swap(other); }
    EventChain& operator=(EventChain&& other) noexcept {
        swap(other);
        return *this;
    }
    ~EventChain() { clear(); }

    bool isEmpty() const { return head_ == nullptr; }
    void append(std::unique_ptr<QueuedEvent> event);
    void prepend(std::unique_ptr<QueuedEvent> event);
    std::unique_ptr<QueuedEvent> takeFirst();  // null when empty
    void clear();
    void swap(EventChain& other) noexcept;

  private:
    QueuedEvent* head_ = nullptr;
    QueuedEvent* tail_ = nullptr;
};

}  // namespace orvc
