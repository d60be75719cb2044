#include "demo_server/core/installation_text.h"

#include <array>

#include "demo_server/core/text_codec.h"

namespace orvc::demo {
namespace {

constexpr std::string_view kFirstLine = "demo-server-installation 1";
constexpr std::string_view kLastLine = "end";
constexpr std::string_view kSeparator = " = ";

class Writer {
  public:
    // One line: the kind, the subject, and the value behind the separator. A subject never holds an equals sign, so the
    // first separator of a line is the one.
    void add(std::string_view kind, std::string_view subject, std::string_view value) {
        text_ += kind;
        text_ += ' ';
        appendEscaped(text_, subject, "=");
        text_ += kSeparator;
        appendEscaped(text_, value);
        text_ += '\n';
    }
    void addKey(std::string_view name) {
        text_ += "key ";
        appendEscaped(text_, name);
        text_ += '\n';
    }
    void addPlain(std::string_view line) {
        text_ += line;
        text_ += '\n';
    }
    std::string take() { return std::move(text_); }

  private:
    std::string text_;
};

void writeDirectory(Writer& writer, const Installation& installation) {
    for (const User& user : installation.users) {
        writer.add("user", user.name, (user.isAdmin ? "1 " : "0 ") + user.password);
    }
    for (const Device& device : installation.devices)
        writer.add("device", macText(device.mac), device.name);
    for (const Group& group : installation.groups) {
        const std::string id = std::to_string(group.id);
        writer.add("group", id, group.key);
        for (const KSMac& member : group.members)
            writer.add("member", id, macText(member));
    }
    for (const AudioMessage& message : installation.messages)
        writer.add("message", message.key, message.name);
    for (const QueueMembership& queue : installation.queues) {
        writer.add("queue",
                   std::to_string(queue.id) + (queue.overflowing ? " 1 " : " 0 ") +
                       std::to_string(queue.overflowState) + (queue.attended ? " 1" : " 0"),
                   queue.name);
    }
}

void writeVariables(Writer& writer, const VariableTree& variables) {
    std::string name;
    for (const auto& [path, key] : variables.keys()) {
        if (key.created) writer.addKey(VariableTree::keyName(path));
        for (const VariableTree::Value& value : key.values) {
            name = path;
            name += variables.fieldName(value.field);
            if (value.isString) {
                writer.add("string", name, value.text);
            } else {
                writer.add("dword", name, std::to_string(value.number));
            }
        }
    }
}

std::optional<bool> parseFlag(std::string_view text) {
    if (text == "0") return false;
    if (text == "1") return true;
    return std::nullopt;
}

bool readUser(Installation& installation, const std::string& name, const std::string& value) {
    const auto flag = parseFlag(std::string_view(value).substr(0, 1));
    if (!flag || value.size() < 2 || value[1] != ' ') return false;
    installation.users.push_back({name, value.substr(2), *flag});
    return true;
}

bool readDevice(Installation& installation, const std::string& mac, const std::string& name) {
    const auto parsed = parseMac(mac);
    if (parsed) installation.devices.push_back({*parsed, name});
    return parsed.has_value();
}

bool readGroup(Installation& installation, const std::string& id, const std::string& key) {
    const auto parsed = parseNumber<std::uint32_t>(id);
    if (!parsed || installation.findGroup(*parsed)) return false;
    installation.groups.push_back({*parsed, key, {}});
    return true;
}

// Members follow their group's line.
bool readMember(Installation& installation, const std::string& id, const std::string& mac) {
    const auto group = parseNumber<std::uint32_t>(id);
    const auto member = parseMac(mac);
    if (!group || !member || installation.groups.empty() || installation.groups.back().id != *group) return false;
    installation.groups.back().members.push_back(*member);
    return true;
}

bool readMessage(Installation& installation, const std::string& key, const std::string& name) {
    installation.messages.push_back({key, name});
    return true;
}

bool readQueue(Installation& installation, const std::string& subject, const std::string& name) {
    std::array<std::string_view, 4> parts;
    std::string_view rest = subject;
    for (std::string_view& part : parts) {
        const std::size_t blank = rest.find(' ');
        part = rest.substr(0, blank);
        rest = blank == std::string_view::npos ? std::string_view{} : rest.substr(blank + 1);
    }
    const auto id = parseNumber<std::uint32_t>(parts[0]);
    const auto overflowing = parseFlag(parts[1]);
    const auto state = parseNumber<std::uint32_t>(parts[2]);
    const auto attended = parseFlag(parts[3]);
    if (!id || !overflowing || !state || !attended || !rest.empty()) return false;
    installation.queues.push_back({*id, *overflowing, *state, *attended, name});
    return true;
}

bool readString(Installation& installation, const std::string& name, const std::string& value) {
    installation.variables.setString(name, value);
    return true;
}

bool readDword(Installation& installation, const std::string& name, const std::string& value) {
    const auto number = parseNumber<std::uint32_t>(value);
    if (number) installation.variables.setDword(name, *number);
    return number.has_value();
}

bool readFile(Installation& installation, const std::string& guid, const std::string& bytes) {
    const auto parsed = parseGuid(guid);
    if (parsed) installation.storeFile(*parsed, bytes);
    return parsed.has_value();
}

struct LineKind {
    std::string_view name;
    bool (*read)(Installation&, const std::string& subject, const std::string& value);
};

constexpr LineKind kLineKinds[] = {
    {"user", readUser},     {"device", readDevice},   {"group", readGroup},
    {"member", readMember}, {"message", readMessage}, {"queue", readQueue},
    {"string", readString}, {"dword", readDword},     {"file", readFile},
};

bool readLine(Installation& installation, std::string_view line) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos) return false;
    const std::string_view kind = line.substr(0, blank);
    const std::string_view rest = line.substr(blank + 1);
    if (kind == "key") {
        const auto path = unescape(rest);
        if (path) installation.variables.createKey(*path);
        return path.has_value();
    }
    const std::size_t separator = rest.find(kSeparator);
    if (separator == std::string_view::npos) return false;
    const auto subject = unescape(rest.substr(0, separator));
    const auto value = unescape(rest.substr(separator + kSeparator.size()));
    if (!subject || !value) return false;
    for (const LineKind& known : kLineKinds) {
        if (known.name == kind) return known.read(installation, *subject, *value);
    }
    return false;
}

// Cuts the next line off `text`, without its line end.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

}  // namespace

std::string formatInstallation(const Installation& installation) {
    Writer writer;
    writer.addPlain(kFirstLine);
    writer.addPlain("# The demo server's building. It is rewritten whole whenever something changes: edit it while no");
    writer.addPlain(
        "# console is running. Delete it to start again with the building that comes with the demo server.");
    writeDirectory(writer, installation);
    writeVariables(writer, installation.variables);
    for (const auto& [guid, bytes] : installation.files)
        writer.add("file", guidText(guid), *bytes);
    writer.addPlain(kLastLine);
    return writer.take();
}

InstallationParse parseInstallation(std::string_view text) {
    Installation installation;
    if (takeLine(text) != kFirstLine) return {std::nullopt, "line 1: not an installation file"};
    for (std::size_t number = 2; !text.empty(); ++number) {
        const std::string_view line = takeLine(text);
        if (line.empty() || line.front() == '#') continue;
        if (line == kLastLine) return {std::move(installation), {}};
        if (!readLine(installation, line)) {
            return {std::nullopt, std::string("line ").append(std::to_string(number)).append(" cannot be read")};
        }
    }
    return {std::nullopt, "the end is missing"};
}

}  // namespace orvc::demo
