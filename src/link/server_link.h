// The calls that the console makes into the pass-through library, as an interface: tests put a plain object behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "link/ks_library.h"

namespace orvc {

struct LibraryVersion {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
};

// What KSStart answered.
struct StartResult {
    std::int32_t code = -1;  // 0 = success, else one of logon_result
    bool isAdministrator = false;
};

// The link in four parts, so that a signature shows what a class may do with it. Every call is made on the
// user-interface thread and returns the library's result, 0 for success, or -1 when no link is open.

// Logs on and off.
class LogonLink {
  public:
    virtual ~LogonLink() = default;
    virtual StartResult start(const KSSocketAddress& address, const std::string& logonId,
                              const std::string& password) = 0;
    virtual std::int32_t stop() = 0;
};

// Asks the server. The answers arrive as events.
class ServerReader {
  public:
    virtual ~ServerReader() = default;

    virtual std::int32_t createGroup(const KSGroupRecord& group) = 0;
    virtual std::int32_t deleteGroup(std::uint32_t groupId) = 0;
    virtual std::int32_t getGroupMembers(std::uint32_t groupId) = 0;
    virtual std::int32_t getMessages() = 0;
    virtual std::int32_t resendSettings() = 0;
    // Makes the root of a subscription where the server has none.
    virtual std::int32_t createRoot(const std::string& path) = 0;
    virtual std::int32_t subscribe(const std::string& path) = 0;
    virtual std::int32_t readFile(const KSGuid& file) = 0;
};

// Changes what is on the server. Only the gate (session/gate.h) has it.
class ServerWriter {
  public:
    virtual ~ServerWriter() = default;

    // Creates `path`; removes it and everything below when it ends in a backslash and `create` is false.
    virtual std::int32_t createKey(const std::string& path, bool create) = 0;
    // A text is sent without its terminator.
    virtual std::int32_t setText(const std::string& name, const std::string& text) = 0;
    virtual std::int32_t setDword(const std::string& name, std::uint32_t number) = 0;
    virtual std::int32_t createFile(KSGuid& created) = 0;
    virtual std::int32_t writeFile(const KSGuid& file, std::string_view bytes) = 0;
    virtual std::int32_t deleteFile(const KSGuid& file) = 0;
};

// The whole link, for whoever opens and closes it.
class ServerLink : public LogonLink, public ServerReader, public ServerWriter {
  public:
    virtual bool isOpen() const = 0;
    // Closes the link: no event arrives after it returned.
    virtual std::int32_t close() = 0;
    // Frees the library; every later call answers -1.
    virtual void unload() = 0;
};

// The link through the real library.
//
// A missing library or entry point makes calls answer -1; none goes through a null pointer. A library whose KSOpen gave
// no handle is left alone from then on: it is neither stopped, closed nor freed.
class KSServerLink final : public ServerLink {
  public:
    // Takes the bound table of a loaded library and the function that frees it. Both may be empty: no library.
    KSServerLink() = default;
    void adoptLibrary(const KSLibrary& library, std::function<void()> freeLibrary);

    bool isLoaded() const { return static_cast<bool>(freeLibrary_); }
    bool canStart() const { return library_.KSStart != nullptr; }

    // The version that the library reports; zeros when it has no such entry point.
    std::optional<LibraryVersion> readVersion() const;
    // Opens the link with `callback` as receiver of its events. The result is not checked; isOpen() tells whether there
    // is a link, and flags() the mode.
    void open(KSEventCallback callback);
    void enableDebug() const;
    // The open flags as the library returned them; 16 before.
    std::uint32_t flags() const { return flags_; }
    bool isConsoleMode() const { return (flags_ & kConsoleModeFlag) != 0; }

    bool isOpen() const override { return handle_ != 0; }
    StartResult start(const KSSocketAddress& address, const std::string& logonId, const std::string& password) override;
    std::int32_t stop() override;
    std::int32_t close() override;
    void unload() override;
    std::int32_t createGroup(const KSGroupRecord& group) override;
    std::int32_t deleteGroup(std::uint32_t groupId) override;
    std::int32_t getGroupMembers(std::uint32_t groupId) override;
    std::int32_t getMessages() override;
    std::int32_t resendSettings() override;
    std::int32_t createRoot(const std::string& path) override;
    std::int32_t createKey(const std::string& path, bool create) override;
    std::int32_t subscribe(const std::string& path) override;
    std::int32_t setText(const std::string& name, const std::string& text) override;
    std::int32_t setDword(const std::string& name, std::uint32_t number) override;
    std::int32_t createFile(KSGuid& created) override;
    std::int32_t readFile(const KSGuid& file) override;
    std::int32_t writeFile(const KSGuid& file, std::string_view bytes) override;
    std::int32_t deleteFile(const KSGuid& file) override;

  private:
    static constexpr std::uint32_t kInitialFlags = 16;

    KSLibrary library_;
    std::function<void()> freeLibrary_;
    std::uint32_t handle_ = 0;
    std::uint32_t flags_ = kInitialFlags;
    std::uint32_t openWord_ = 0;   // written by KSOpen; kept, never read
    std::uint32_t keptWord_ = 0;   // passed to KSStart as it is
    std::uint32_t startWord_ = 0;  // written by KSStart; kept, never read
};

}  // namespace orvc
