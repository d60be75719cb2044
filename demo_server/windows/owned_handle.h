// The owner of a kernel handle.
#pragma once

#include <windows.h>

#include <utility>

namespace orvc::demo {

// Closes its handle. Null is no handle; INVALID_HANDLE_VALUE is taken for null.
class OwnedHandle {
  public:
    OwnedHandle() = default;
    explicit OwnedHandle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    OwnedHandle(OwnedHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    OwnedHandle& operator=(OwnedHandle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~OwnedHandle() { reset(); }

    void reset() {
        if (handle_) CloseHandle(std::exchange(handle_, nullptr));
    }
    HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    HANDLE handle_ = nullptr;
};

}  // namespace orvc::demo
