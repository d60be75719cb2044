// The 50 entry points.
//
// Their prototypes come from the list that the console binds with, so that neither names nor arguments can drift: the
// called ones are defined below, those without arguments are never called and get a body here and now.
#include <windows.h>

#include <cstring>
#include <memory>
#include <mutex>

#include "demo_server/core/call_line.h"
#include "demo_server/windows/link.h"
#include "demo_server/windows/slim_lock.h"
#include "demo_server/windows/surroundings.h"
#include "demo_server/windows/version.h"
#include "link/ks_entry_points.h"

namespace orvc::demo {
namespace {

// Longer texts and files than this are not believed.
constexpr std::uint32_t kMostBytes = 16 * 1024 * 1024;

// What the process shares. It is never destroyed: at the process's end the event thread is gone already, and there is
// nothing left to be put in order.
struct Shared {
    SlimLock lock;
    std::shared_ptr<Link> link;  // the one that is open
    std::uint32_t handle = 0;    // its handle
    std::uint32_t handlesGiven = 0;
    std::filesystem::path trace;

    Shared() { readTracePath(readOptions()); }
    void readTracePath(const Options& options) {
        trace = options.trace.empty() ? std::filesystem::path() : pathFromUtf8(options.trace);
    }
};

Shared& shared() {
    static Shared& instance = *new Shared;
    return instance;
}

std::shared_ptr<Link> findLink(std::uint32_t handle) {
    const std::lock_guard guard(shared().lock);
    return handle != 0 && handle == shared().handle ? shared().link : nullptr;
}

// Runs the body of an entry point. No exception gets past it.
template <typename Body>
std::int32_t guarded(const Body& body) noexcept {
    try {
        return body();
    } catch (...) {
        return kRefused;
    }
}

// The same for a call on an open link's server.
template <typename Call>
std::int32_t onServer(std::uint32_t handle, const Call& call) noexcept {
    return guarded([&] {
        const auto link = findLink(handle);
        return link ? link->with(call) : kRefused;
    });
}

// Adds a line to the call trace, when there is one; `describe` puts it together.
template <typename Describe>
void trace(const char* call, const Describe& describe) noexcept {
    guarded([&] {
        const std::lock_guard guard(shared().lock);
        if (shared().trace.empty()) return kDone;
        CallLine line(call);
        describe(line);
        appendTraceLine(shared().trace, line.text());
        return kDone;
    });
}

void trace(const char* call) noexcept {
    trace(call, [](CallLine&) {});
}

std::int32_t answerNeverCalled(const char* call) noexcept {
    trace(call);
    return 0;
}

}  // namespace
}  // namespace orvc::demo

using namespace orvc;
using namespace orvc::demo;

// A prototype without arguments gets the body, every other one a semicolon.
#define ORVC_SECOND(first, second, ...) second
#define ORVC_CHOOSE_SECOND(...) ORVC_SECOND(__VA_ARGS__)
#define ORVC_BODY_IF_EMPTY(...) \
    ORVC_CHOOSE_SECOND(         \
        __VA_OPT__(~, ;, ) ~, { return answerNeverCalled(__func__); }, ~)
#define ORVC_EXPORT(name, parameters) \
    extern "C" __declspec(dllexport) std::int32_t KS_CALL name parameters ORVC_BODY_IF_EMPTY parameters
ORVC_KS_ENTRY_POINTS(ORVC_EXPORT)

// ---- Link ----

std::int32_t KS_CALL KSOpen(std::uint32_t* handle, std::uint32_t* flags, KSEventCallback callback,
                            std::uint32_t* outWord) {
    return guarded([&] {
        const Options options = readOptions();
        {
            const std::lock_guard guard(shared().lock);
            shared().readTracePath(options);
        }
        trace("KSOpen", [&](CallLine& line) { flags ? line.number(*flags) : line.name(nullptr); });
        if (!handle || !flags || !callback || !outWord) return kRefused;
        *handle = 0;
        *outWord = 0;
        *flags = options.standalone ? *flags & ~kConsoleModeFlag : *flags | kConsoleModeFlag;
        if (options.noHandle) return kDone;
        const std::lock_guard guard(shared().lock);
        if (shared().link) return kRefused;
        shared().link = Link::open(options, callback);
        if (!shared().link) return kRefused;
        *handle = shared().handle = ++shared().handlesGiven;
        return kDone;
    });
}

std::int32_t KS_CALL KSClose(std::uint32_t handle) {
    trace("KSClose");
    return guarded([&] {
        std::shared_ptr<Link> link;
        {
            const std::lock_guard guard(shared().lock);
            if (handle == 0 || handle != shared().handle) return kRefused;
            link = std::move(shared().link);
            shared().handle = 0;
        }
        link->close();
        return kDone;
    });
}

std::int32_t KS_CALL KSStart(std::uint32_t handle, const KSSocketAddress* address, std::uint32_t keptWord,
                             const char* logonId, const char* password, std::uint32_t* outWord,
                             std::uint32_t* adminFlag) {
    trace("KSStart", [&](CallLine& line) { line.address(address).number(keptWord).quoted(logonId).quoted(password); });
    if (!address || !logonId || !password || !outWord || !adminFlag) return kRefused;
    return onServer(handle, [&](Server& server) {
        bool isAdmin = false;
        const std::int32_t result = server.start(*address, logonId, password, isAdmin);
        *outWord = 0;
        *adminFlag = isAdmin ? 1 : 0;
        return result;
    });
}

std::int32_t KS_CALL KSStop(std::uint32_t handle) {
    trace("KSStop");
    return onServer(handle, [](Server& server) { return server.stop(); });
}

std::int32_t KS_CALL KSDllVersion(std::uint32_t* major, std::uint32_t* minor, std::uint32_t* build) {
    trace("KSDllVersion");
    if (!major || !minor || !build) return kRefused;
    *major = ORVC_DEMO_VERSION_MAJOR;
    *minor = ORVC_DEMO_VERSION_MINOR;
    *build = ORVC_DEMO_VERSION_BUILD;
    return kDone;
}

std::int32_t KS_CALL KSSetDebug(std::uint32_t on) {
    trace("KSSetDebug", [&](CallLine& line) { line.number(on); });
    return kDone;
}

// ---- Directory ----

std::int32_t KS_CALL KSCreateGroup(std::uint32_t handle, const KSGroupRecord* group, std::uint32_t first,
                                   std::uint32_t second, std::uint32_t one) {
    trace("KSCreateGroup", [&](CallLine& line) {
        if (group) line.number(group->groupId).quoted(fieldText(group->key));
        if (!group) line.name(nullptr);
        line.number(first).number(second).number(one);
    });
    if (!group) return kRefused;
    return onServer(handle, [&](Server& server) { return server.createGroup(*group); });
}

std::int32_t KS_CALL KSDeleteGroup(std::uint32_t handle, std::uint32_t groupId) {
    trace("KSDeleteGroup", [&](CallLine& line) { line.number(groupId); });
    return onServer(handle, [&](Server& server) { return server.deleteGroup(groupId); });
}

std::int32_t KS_CALL KSGetGroupMembers(std::uint32_t handle, std::uint32_t groupId) {
    trace("KSGetGroupMembers", [&](CallLine& line) { line.number(groupId); });
    return onServer(handle, [&](Server& server) { return server.sendGroupMembers(groupId); });
}

std::int32_t KS_CALL KSGetMessages(std::uint32_t handle) {
    trace("KSGetMessages");
    return onServer(handle, [](Server& server) { return server.sendMessages(); });
}

std::int32_t KS_CALL KSResendSettings(std::uint32_t handle) {
    trace("KSResendSettings");
    return onServer(handle, [](Server& server) { return server.resendSettings(); });
}

// ---- Variables ----

std::int32_t KS_CALL KSSysVarCreateKey(std::uint32_t handle, const char* path, std::uint32_t flags,
                                       std::uint32_t create) {
    trace("KSSysVarCreateKey", [&](CallLine& line) { line.name(path).hex(flags).number(create); });
    if (!path) return kRefused;
    return onServer(handle, [&](Server& server) { return server.createKey(path, create != 0); });
}

std::int32_t KS_CALL KSSysVarSubscribe(std::uint32_t handle, const char* path, std::uint32_t word, std::uint32_t one) {
    trace("KSSysVarSubscribe", [&](CallLine& line) { line.name(path).number(word).number(one); });
    if (!path) return kRefused;
    return onServer(handle, [&](Server& server) { return server.subscribe(path); });
}

std::int32_t KS_CALL KSSysVarSetValue(std::uint32_t handle, const char* name, std::uint32_t type, const void* value,
                                      std::uint32_t length) {
    const bool isValue = (type & variable_type::kValue) != 0 && (type & variable_type::kDeleted) == 0;
    const std::uint32_t kind = type & variable_type::kKindMask;
    std::uint32_t number = 0;
    const bool isDword = isValue && kind == variable_type::kDwordKind && value && length == sizeof number;
    const bool isString =
        isValue && kind == variable_type::kStringKind && (value || length == 0) && length <= kMostBytes;
    if (isDword) std::memcpy(&number, value, sizeof number);
    const std::string_view text =
        isString && value ? std::string_view(static_cast<const char*>(value), length) : std::string_view();
    trace("KSSysVarSetValue", [&](CallLine& line) {
        line.name(name).hex(type);
        if (isDword) line.number(number);
        if (isString) line.quoted(text);
        if (!isDword && !isString) line.name("refused");
        line.number(length);
    });
    if (!name || (!isDword && !isString)) return kRefused;
    return onServer(handle, [&](Server& server) {
        return isDword ? server.setDword(name, type, number) : server.setString(name, type, text);
    });
}

// ---- Files ----

std::int32_t KS_CALL KSFileCreate(std::uint32_t handle, KSGuid* created) {
    const std::int32_t result =
        created ? onServer(handle, [&](Server& server) { return server.createFile(*created); }) : kRefused;
    trace("KSFileCreate", [&](CallLine& line) {
        if (result == kDone) line.guid(*created);
    });
    return result;
}

std::int32_t KS_CALL KSFileRead(std::uint32_t handle, KSGuid file) {
    trace("KSFileRead", [&](CallLine& line) { line.guid(file); });
    return onServer(handle, [&](Server& server) { return server.readFile(file); });
}

std::int32_t KS_CALL KSFileWrite(std::uint32_t handle, KSGuid file, const void* bytes, std::uint32_t length) {
    const bool isGood = (bytes || length == 0) && length <= kMostBytes;
    const std::string_view content =
        isGood && bytes ? std::string_view(static_cast<const char*>(bytes), length) : std::string_view();
    trace("KSFileWrite", [&](CallLine& line) { line.guid(file).quoted(content).number(length); });
    if (!isGood) return kRefused;
    return onServer(handle, [&](Server& server) { return server.writeFile(file, std::string(content)); });
}

std::int32_t KS_CALL KSFileDelete(std::uint32_t handle, KSGuid file) {
    trace("KSFileDelete", [&](CallLine& line) { line.guid(file); });
    return onServer(handle, [&](Server& server) { return server.deleteFile(file); });
}
