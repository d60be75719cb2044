#include "link/server_link.h"

#include <utility>

namespace orvc {
namespace {

constexpr std::int32_t kNoLink = -1;

// Calls an entry point with the link's handle first, unless there is no link or no such entry point.
template <typename Function, typename... Arguments>
std::int32_t call(Function function, std::uint32_t handle, Arguments... arguments) {
    return function != nullptr && handle != 0 ? function(handle, arguments...) : kNoLink;
}

}  // namespace

void KSServerLink::adoptLibrary(const KSLibrary& library, std::function<void()> freeLibrary) {
    library_ = library;
    freeLibrary_ = std::move(freeLibrary);
}

std::optional<LibraryVersion> KSServerLink::readVersion() const {
    if (library_.KSDllVersion == nullptr) return std::nullopt;
    LibraryVersion version;
    library_.KSDllVersion(&version.major, &version.minor, &version.build);
    return version;
}

void KSServerLink::open(KSEventCallback callback) {
    flags_ = kInitialFlags;
    if (library_.KSOpen != nullptr) library_.KSOpen(&handle_, &flags_, callback, &openWord_);
}

void KSServerLink::enableDebug() const {
    if (library_.KSSetDebug != nullptr) library_.KSSetDebug(1);
}

StartResult KSServerLink::start(const KSSocketAddress& address, const std::string& logonId,
                                const std::string& password) {
    std::uint32_t admin = 0;
    StartResult result;
    result.code =
        call(library_.KSStart, handle_, &address, keptWord_, logonId.c_str(), password.c_str(), &startWord_, &admin);
    result.isAdministrator = admin != 0;
    return result;
}

std::int32_t KSServerLink::stop() {
    return call(library_.KSStop, handle_);
}

std::int32_t KSServerLink::close() {
    return call(library_.KSClose, handle_);
}

void KSServerLink::unload() {
    handle_ = 0;
    library_ = {};
    if (const auto freeLibrary = std::exchange(freeLibrary_, nullptr)) freeLibrary();
}

std::int32_t KSServerLink::createGroup(const KSGroupRecord& group) {
    return call(library_.KSCreateGroup, handle_, &group, 0U, 0U, 1U);
}

std::int32_t KSServerLink::deleteGroup(std::uint32_t groupId) {
    return call(library_.KSDeleteGroup, handle_, groupId);
}

std::int32_t KSServerLink::getGroupMembers(std::uint32_t groupId) {
    return call(library_.KSGetGroupMembers, handle_, groupId);
}

std::int32_t KSServerLink::getMessages() {
    return call(library_.KSGetMessages, handle_);
}

std::int32_t KSServerLink::resendSettings() {
    return call(library_.KSResendSettings, handle_);
}

std::int32_t KSServerLink::createRoot(const std::string& path) {
    return createKey(path, true);
}

std::int32_t KSServerLink::createKey(const std::string& path, bool create) {
    return call(library_.KSSysVarCreateKey, handle_, path.c_str(), variable_type::kKey, create ? 1U : 0U);
}

std::int32_t KSServerLink::subscribe(const std::string& path) {
    return call(library_.KSSysVarSubscribe, handle_, path.c_str(), 0U, 1U);
}

std::int32_t KSServerLink::setText(const std::string& name, const std::string& text) {
    return call(library_.KSSysVarSetValue, handle_, name.c_str(), variable_type::kString,
                static_cast<const void*>(text.c_str()), static_cast<std::uint32_t>(text.size()));
}

std::int32_t KSServerLink::setDword(const std::string& name, std::uint32_t number) {
    return call(library_.KSSysVarSetValue, handle_, name.c_str(), variable_type::kDword,
                static_cast<const void*>(&number), static_cast<std::uint32_t>(sizeof number));
}

std::int32_t KSServerLink::createFile(KSGuid& created) {
    return call(library_.KSFileCreate, handle_, &created);
}

std::int32_t KSServerLink::readFile(const KSGuid& file) {
    return call(library_.KSFileRead, handle_, file);
}

std::int32_t KSServerLink::writeFile(const KSGuid& file, std::string_view bytes) {
    return call(library_.KSFileWrite, handle_, file, static_cast<const void*>(bytes.data()),
                static_cast<std::uint32_t>(bytes.size()));
}

std::int32_t KSServerLink::deleteFile(const KSGuid& file) {
    return call(library_.KSFileDelete, handle_, file);
}

}  // namespace orvc
