// The main window as the event queue sees it: a message queue that holds so many and refuses on demand.
#pragma once

#include <chrono>

#include "link/event_queue.h"

namespace orvc {

class FakeWindow final : public WindowPoster {
  public:
    struct Message {
        std::uint32_t message;
        std::intptr_t lParam;
    };

    bool post(std::uint32_t message, std::uintptr_t, std::intptr_t lParam) override {
        const std::lock_guard lock(mutex_);
        ++posts_;
        if (posted_.size() >= 10'000 || (refuseEvery != 0 && posts_ % refuseEvery == 0)) return false;
        posted_.push_back({message, lParam});
        changed_.notify_all();
        return true;
    }
    bool send(std::uint32_t, std::uintptr_t, std::intptr_t) override {
        if (onSend) return onSend();
        std::unique_lock lock(mutex_);
        ++sends_;
        changed_.notify_all();
        return changed_.wait_for(lock, std::chrono::milliseconds(5), [this] { return sends_ == 0; });
    }
    void requestTimer() override {
        const std::lock_guard lock(mutex_);
        timer_ = true;
        changed_.notify_all();
    }

    // Waits until something has been posted or sent or a timer asked for; false when nothing comes.
    bool waitForMessage() {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20),
                                 [this] { return timer_ || sends_ != 0 || !posted_.empty(); });
    }
    // What was posted since the last call; the timer and whatever was sent count as handled too.
    std::vector<Message> take() {
        const std::lock_guard lock(mutex_);
        timer_ = false;
        sends_ = 0;
        changed_.notify_all();
        return std::exchange(posted_, {});
    }

    std::size_t refuseEvery = 0;   // 1 = every post
    std::function<bool()> onSend;  // instead of waiting for another thread

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Message> posted_;
    std::size_t posts_ = 0;
    int sends_ = 0;
    bool timer_ = false;
};

}  // namespace orvc
