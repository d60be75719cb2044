// What the logon dialog holds.
#pragma once

#include <string>

namespace orvc {

// What the logon dialog starts from and ends with.
struct LogonEntry {
    std::string logonId;
    std::string password;
    std::string address;  // dotted IPv4
    std::string port;     // decimal
    bool saveCredentials = false;
    bool mayLogOnAtOnce = false;  // with saved credentials, without a click
};

struct LogonOutcome {      // neither = the dialog went away without the operator
    bool success = false;  // logged on with administrator rights
    bool cancelled = false;
    LogonEntry entry;
};

}  // namespace orvc
