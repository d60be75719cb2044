// Owners of Windows handles. No other file frees one.
#pragma once

#include <windows.h>

#include <utility>

namespace orvc::win32 {

// A move-only owner of a handle whose kind says how it is freed and what is no handle.
template <typename Policy>
class UniqueHandle {
  public:
    using Handle = typename Policy::Handle;

    UniqueHandle() = default;
    explicit UniqueHandle(Handle handle) : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~UniqueHandle() { reset(); }

    Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != Policy::none(); }
    Handle release() { return std::exchange(handle_, Policy::none()); }
    void reset(Handle handle = Policy::none()) {
        const Handle old = std::exchange(handle_, handle);
        if (old != Policy::none()) Policy::free(old);
    }
    // For functions that fill a handle in. Frees what was held.
    Handle* receive() {
        reset();
        return &handle_;
    }

  private:
    Handle handle_ = Policy::none();
};

struct ModulePolicy {
    using Handle = HMODULE;
    static Handle none() { return nullptr; }
    static void free(Handle handle) { FreeLibrary(handle); }
};
using UniqueModule = UniqueHandle<ModulePolicy>;

// A process, a thread or another object of the kernel.
struct KernelObjectPolicy {
    using Handle = HANDLE;
    static Handle none() { return nullptr; }
    static void free(Handle handle) { CloseHandle(handle); }
};
using UniqueKernelObject = UniqueHandle<KernelObjectPolicy>;

struct FilePolicy {
    using Handle = HANDLE;
    static Handle none() { return INVALID_HANDLE_VALUE; }
    static void free(Handle handle) { CloseHandle(handle); }
};
using UniqueFile = UniqueHandle<FilePolicy>;

struct RegistryKeyPolicy {
    using Handle = HKEY;
    static Handle none() { return nullptr; }
    static void free(Handle handle) { RegCloseKey(handle); }
};
using UniqueRegistryKey = UniqueHandle<RegistryKeyPolicy>;

struct FindPolicy {
    using Handle = HANDLE;
    static Handle none() { return INVALID_HANDLE_VALUE; }
    static void free(Handle handle) { FindClose(handle); }
};
using UniqueFind = UniqueHandle<FindPolicy>;

struct HookPolicy {
    using Handle = HHOOK;
    static Handle none() { return nullptr; }
    static void free(Handle handle) { UnhookWindowsHookEx(handle); }
};
using UniqueHook = UniqueHandle<HookPolicy>;

struct MenuPolicy {
    using Handle = HMENU;
    static Handle none() { return nullptr; }
    static void free(Handle handle) { DestroyMenu(handle); }
};
using UniqueMenu = UniqueHandle<MenuPolicy>;

struct AcceleratorsPolicy {
    using Handle = HACCEL;
    static Handle none() { return nullptr; }
    static void free(Handle handle) { DestroyAcceleratorTable(handle); }
};
using UniqueAccelerators = UniqueHandle<AcceleratorsPolicy>;

struct IconPolicy {
    using Handle = HICON;
    static Handle none() { return nullptr; }
    static void free(Handle handle) { DestroyIcon(handle); }
};
using UniqueIcon = UniqueHandle<IconPolicy>;

}  // namespace orvc::win32
