#include "win32/system_log.h"

#include <windows.h>

#include <cstdio>

#include "win32/handles.h"

namespace orvc::win32 {
namespace {

class StdioLogFile final : public LogFile {
  public:
    explicit StdioLogFile(std::FILE* file) : file_(file) {}
    ~StdioLogFile() override { std::fclose(file_); }
    StdioLogFile(const StdioLogFile&) = delete;
    StdioLogFile& operator=(const StdioLogFile&) = delete;

    bool write(std::string_view bytes) override {
        return std::fwrite(bytes.data(), 1, bytes.size(), file_) == bytes.size();
    }
    bool flush() override { return std::fflush(file_) == 0; }

  private:
    std::FILE* file_;
};

}  // namespace

std::unique_ptr<LogFile> SystemLog::openForAppending(const std::string& path) {
    // "c": a flush commits to the disk. "b": line feeds stay bare.
    std::FILE* file = std::fopen(path.c_str(), "abc");
    return file != nullptr ? std::make_unique<StdioLogFile>(file) : nullptr;
}

bool SystemLog::removeFile(const std::string& path) {
    return DeleteFileA(path.c_str()) != 0 || GetLastError() == ERROR_FILE_NOT_FOUND;
}

bool SystemLog::emptyFile(const std::string& path) {
    // Not fopen's "w", which would make a file that is not there.
    const UniqueFile file(CreateFileA(path.c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(file);
}

void SystemLog::writeToDebugger(const char* text) {
    OutputDebugStringA(text);
}

}  // namespace orvc::win32
