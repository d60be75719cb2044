#include "demo_server/windows/link.h"

#include "demo_server/core/built_in_building.h"
#include "demo_server/core/generated_installation.h"
#include "demo_server/core/installation_file.h"
#include "demo_server/windows/surroundings.h"

namespace orvc::demo {

Link::Link(const Options& options, KSEventCallback callback)
    : callback_(callback), wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    if (options.generated) {
        Installation generated = makeGeneratedInstallation(*options.generated, host_.utcSeconds());
        server_ = std::make_unique<Server>(std::move(generated), options, std::vector<std::string>{}, host_);
        return;
    }
    file_ = installationPath(options);
    InstallationLoad load;
    if (!file_.empty()) load = loadInstallationFile(file_);
    std::vector<std::string> notices;
    if (!load.problem.empty()) notices.push_back("Demo server: " + load.problem);
    const bool hasFile = load.installation.has_value();
    Installation installation = hasFile ? std::move(*load.installation) : makeBuiltInBuilding(host_.utcSeconds());
    server_ = std::make_unique<Server>(std::move(installation), options, std::move(notices), host_);
    if (!hasFile) server_->markChanged();
}

std::shared_ptr<Link> Link::open(const Options& options, KSEventCallback callback) {
    std::shared_ptr<Link> link(new Link(options, callback));
    return link->wake_ && link->startThread() ? link : nullptr;
}

bool Link::startThread() {
    // The thread owns a reference to the link, and one to this library so that its code outlives KSClose and
    // FreeLibrary.
    HMODULE self = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&Link::runThread),
                            &self)) {
        return false;
    }
    auto reference = std::make_unique<std::shared_ptr<Link>>(shared_from_this());
    thread_ = OwnedHandle(CreateThread(nullptr, 0, &Link::runThread, reference.get(), CREATE_SUSPENDED, &threadId_));
    if (!thread_) {
        FreeLibrary(self);
        return false;
    }
    reference.release();  // the thread adopts it
    ResumeThread(thread_.get());
    return true;
}

DWORD WINAPI Link::runThread(void* link) {
    HMODULE self = nullptr;
    {
        const std::unique_ptr<std::shared_ptr<Link>> adopted(static_cast<std::shared_ptr<Link>*>(link));
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&Link::runThread), &self);
        try {
            (*adopted)->runEvents();
        } catch (...) {
            // Out of memory: the link falls silent, and closes like any other.
        }
    }
    FreeLibraryAndExitThread(self, 0);
}

void Link::runEvents() {
    Batch batch;
    for (std::optional<std::string> toSave; !closing_; toSave.reset()) {
        const DWORD wait = takeWork(batch, toSave);
        // Saved first: a callback may close the link, which saves what came after.
        if (toSave) save(*toSave);
        deliver(batch);
        if (batch.empty() && !toSave) WaitForSingleObject(wake_.get(), wait);
    }
}

DWORD Link::takeWork(Batch& batch, std::optional<std::string>& toSave) {
    const std::lock_guard guard(lock_);
    batch.clear();
    if (closing_) return 0;
    server_->takeBatch(batch);
    toSave = server_->takeDueSave();
    const auto next = server_->nextWork();
    if (!next) return INFINITE;
    const Millis now = host_.ticks();
    return *next <= now ? 0 : static_cast<DWORD>(*next - now);
}

void Link::deliver(const Batch& batch) {
    batch.deliver(callback_, [&] { return !closing_ && server_->generation() == batch.generation; });
}

void Link::save(const std::string& text) {
    if (file_.empty() || saveInstallationFile(file_, text)) return;
    const std::lock_guard guard(lock_);
    server_->saveFailed();
}

void Link::close() {
    {
        const std::lock_guard guard(lock_);
        server_->close();
        closing_ = true;
    }
    SetEvent(wake_.get());
    // From its own callback, the thread cannot be waited for; it ends when the callback returns, and saves nothing
    // more.
    if (GetCurrentThreadId() != threadId_) waitForThread();
    saveAtClose();
}

void Link::waitForThread() {
    HANDLE thread = thread_.get();
    for (;;) {
        const DWORD result = MsgWaitForMultipleObjectsEx(1, &thread, INFINITE, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
        if (result != WAIT_OBJECT_0 + 1) return;
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);  // answers what was sent
    }
}

void Link::saveAtClose() {
    std::optional<std::string> text;
    {
        const std::lock_guard guard(lock_);
        text = server_->takeSave();
    }
    if (!text || file_.empty()) return;
    // Whoever holds the file for a moment (a virus scanner, a search) shall not cost the operator the last change.
    for (int attempt = 0; attempt < 5 && !saveInstallationFile(file_, *text); ++attempt)
        Sleep(50);
}

}  // namespace orvc::demo
