#include "link/queued_events.h"

#include <new>
#include <utility>

namespace orvc {

VariableEvent::VariableEvent(const KSVariableNotification& notification, std::size_t nameLength, std::size_t textLength)
    : QueuedEvent(private_message::kVariable, 0),
      type_(notification.type),
      number_(notification.number),
      nameLength_(nameLength),
      textLength_(textLength),
      hasText_(notification.text != nullptr) {
    char* out = reinterpret_cast<char*>(this + 1);
    std::memcpy(out, notification.name ? notification.name : "", nameLength + 1);
    if (notification.text != nullptr) std::memcpy(out + nameLength + 1, notification.text, textLength + 1);
}

std::unique_ptr<VariableEvent> VariableEvent::make(const KSVariableNotification& notification) {
    const std::size_t nameLength = notification.name ? std::strlen(notification.name) : 0;
    const std::size_t textLength = notification.text ? std::strlen(notification.text) : 0;
    const std::size_t textBytes = nameLength + 1 + (notification.text ? textLength + 1 : 0);
    void* memory = event_memory::allocate(sizeof(VariableEvent) + textBytes);
    return std::unique_ptr<VariableEvent>(::new (memory) VariableEvent(notification, nameLength, textLength));
}

void EventChain::append(std::unique_ptr<QueuedEvent> event) {
    QueuedEvent* added = event.release();
    added->next_ = nullptr;
    if (tail_ != nullptr)
        tail_->next_ = added;
    else
        head_ = added;
    tail_ = added;
}

void EventChain::prepend(std::unique_ptr<QueuedEvent> event) {
    QueuedEvent* added = event.release();
    added->next_ = head_;
    head_ = added;
    if (tail_ == nullptr) tail_ = added;
}

std::unique_ptr<QueuedEvent> EventChain::takeFirst() {
    std::unique_ptr<QueuedEvent> first(head_);
    if (head_ != nullptr) head_ = head_->next_;
    if (head_ == nullptr) tail_ = nullptr;
    return first;
}

void EventChain::clear() {
    while (takeFirst() != nullptr) {
    }
}

void EventChain::swap(EventChain& other) noexcept {
    std::swap(head_, other.head_);
    std::swap(tail_, other.tail_);
}

}  // namespace orvc
