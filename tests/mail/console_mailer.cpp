// Lets the console on Windows, or under Wine, send test e-mails from its Preferences.
//
// Arguments: a certificate file (DER) that the user trusts meanwhile, subject, message, and for each e-mail
// "port,password,recipients". The texts are in the code page of the machine. Prints what each message box says, and
// then the tracking file's lines about e-mail.
#include <windows.h>

#include <shlobj.h>
#include <wincrypt.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "resources/resource.h"
#include "tour/event_entry.h"
#include "tour/mail_step.h"

namespace {

using orvc::driver::ConsoleDriver;

constexpr const char* kSettingsKey = "Software\\Kestrel Sonics\\ORVSConfig\\settings";

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Trusts a certificate until the end of the program.
class Trust {
  public:
    explicit Trust(const std::string& path);
    ~Trust() {
        if (certificate_ != nullptr) CertDeleteCertificateFromStore(certificate_);
        CertCloseStore(store_, 0);
    }
    Trust(const Trust&) = delete;
    Trust& operator=(const Trust&) = delete;
    bool isGood() const { return certificate_ != nullptr; }

  private:
    HCERTSTORE store_ = CertOpenStore(CERT_STORE_PROV_SYSTEM_A, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, "ROOT");
    PCCERT_CONTEXT certificate_ = nullptr;
};

Trust::Trust(const std::string& path) {
    const std::string bytes = readFile(path);
    CertAddEncodedCertificateToStore(store_, X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(bytes.data()),
                                     static_cast<DWORD>(bytes.size()), CERT_STORE_ADD_REPLACE_EXISTING, &certificate_);
    // Other processes see it at once.
    CertControlStore(store_, 0, CERT_STORE_CTRL_COMMIT, nullptr);
}

void send(ConsoleDriver& console, orvc::driver::MailTexts texts, const std::string& target) {
    const std::size_t comma = target.find(',');
    const std::size_t second = target.find(',', comma + 1);
    texts.to = target.substr(second + 1);
    orvc::driver::PreferencesDriver preferences(console);
    preferences.showEmailPage();
    preferences.enter({"console", target.substr(comma + 1, second - comma - 1), "localhost", "console@clinic.example",
                       std::atoi(target.c_str())});
    const HWND test = preferences.openTest(texts);
    const HWND box = preferences.send(test);
    std::printf("%s\n", ConsoleDriver::messageText(box).c_str());
    ConsoleDriver::click(box, IDOK);
    console.waitUntilGone(box);
    // Sent, it closes by itself.
    if (!console.waitUntilGone(test, 500)) ConsoleDriver::click(test, IDCANCEL);
    console.waitUntilGone(test);
    preferences.close(IDCANCEL);
}

void printLog() {
    char folder[MAX_PATH] = "";
    SHGetSpecialFolderPathA(nullptr, folder, CSIDL_APPDATA, FALSE);
    std::ifstream log(std::string(folder) + "\\Kestrel Sonics\\ORVCTracking.txt");
    const std::string routine = "sendEmail: ";
    for (std::string line; std::getline(log, line);)
        if (const std::size_t at = line.find(routine); at != std::string::npos)
            std::puts(line.c_str() + at + routine.size());
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 5) return 2;
    const Trust trust(arguments[1]);
    if (!trust.isGood()) return 2;
    const DWORD on = 1;
    RegSetKeyValueA(HKEY_CURRENT_USER, kSettingsKey, "recordEvents", REG_DWORD, &on, sizeof on);
    SetEnvironmentVariableA("ORVC_DEMO", "fire=0;devices=1;events=1");
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string own = path;
    ConsoleDriver console;
    try {
        if (!console.start(own.substr(0, own.rfind('\\') + 1) + "ORVSConfig.exe") || !console.logOn(1)) return 3;
        for (int i = 4; i < count; ++i)
            send(console, {"", arguments[2], arguments[3]}, arguments[i]);
    } catch (const orvc::driver::StepFailed& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    console.choose(IDM_EXIT);
    console.waitForEnd();
    printLog();
    return 0;
}
