// Reads what the demo server has stored, from its installation file.
#pragma once

#include <map>
#include <string>

namespace orvc::driver {

// A snapshot of the file, taken by the constructor; the demo server writes it a fifth of a second after a change.
class StoredInstallation {
  public:
    explicit StoredInstallation(const std::string& path);

    // The key of the record below \ORVS\<branch>\ whose field has that value; empty when there is none.
    std::string findKey(const std::string& branch, const std::string& field, const std::string& value) const;
    // A field of a record, as text; empty when it is not stored.
    std::string value(const std::string& branch, const std::string& key, const std::string& field) const;
    // A value directly below \ORVS\, as text; empty when it is not stored.
    std::string setting(const std::string& name) const;
    // A payload file's bytes; empty when there is none.
    std::string file(const std::string& guid) const;

  private:
    std::map<std::string, std::string> values_;  // by full name
    std::map<std::string, std::string> files_;
};

}  // namespace orvc::driver
