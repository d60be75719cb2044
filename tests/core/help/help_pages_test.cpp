// The sources of the help: complete in every language, and nothing in them leads nowhere.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "app/help_chapters.h"
#include "resources/resource.h"

namespace orvc {
namespace {

namespace fs = std::filesystem;

const fs::path kProject = ORVC_PROJECT;

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// What the first group of an expression matched, each time.
std::vector<std::string> findAll(const std::string& text, const std::string& expression) {
    const std::regex regex(expression);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

// Pages in the order of the contents.
std::vector<std::string> listPages() {
    std::vector<std::string> pages;
    std::istringstream contents(readFile(kProject / "help" / "contents"));
    for (std::string line; std::getline(contents, line);)
        if (!line.starts_with("#")) pages.push_back(line.substr(line.find_first_not_of(' ')) + ".htm");
    return pages;
}

// Names of the texts that a message box can show: all that resource.h has, but captions, titles and what stands in
// lists, columns, buttons and labels. A new text has to be explained or to be added here.
std::vector<std::string> listMessages() {
    static const std::regex elsewhere(
        "IDS_(ABOUT|OPTIONS|TITLE|COLUMN|DAY_TAB|TAB|STATUS|RESPONSE|TRIGGER|SELECT|PLACE|RELAY|AUDIO|TTS|TEXT_FILE|"
        "WAIT|SCHEDULE)_.*|.*_(CAPTION|UNASSIGNED)|IDS_EMAIL_(CHOSEN|ERROR|SELECT|TEST_SEND)|IDS_LOGON_(REQUIRED|"
        "WAITING|COUNTDOWN)|IDS_LOGGING_IN|IDS_MODIFY_EVENT|IDS_SOURCE_SERVER|IDS_(EVERY|ALL|NO)_DAYS?|IDS_VARIABLE_"
        "TIMES|IDS_HOUR_NONE|"
        "IDS_[AP]M|IDS_TIME_[AP]M|IDS_NEVER|IDS_MIDNIGHT|IDS_NOON|IDS_SECONDS|IDS_MINUTES|IDS_EMPTY_FIELD|"
        "IDS_(SUN|MON|TUES|WEDNES|THURS|FRI|SATUR)DAY|IDS_SOCKETS_FAILED");
    std::vector<std::string> messages;
    for (const std::string& name : findAll(readFile(kProject / "resources/resource.h"), "#define (IDS_\\w+) "))
        if (!std::regex_match(name, elsewhere)) messages.push_back(name);
    return messages;
}

// The texts of a language's windows.
fs::path scriptOf(const std::string& language) {
    static const std::map<std::string, std::string> files{
        {"en", "orvsconfig.rc"}, {"de", "languages/german.rc"}, {"fr", "languages/french.rc"}};
    return kProject / "resources" / files.at(language);
}

// A message's text in a resource script.
std::string textOf(const std::string& script, const std::string& name) {
    const auto found = findAll(script, "\n    " + name + " \"([^\"]*)\"");
    EXPECT_EQ(found.size(), 1u) << name;
    return found.empty() ? std::string() : found.front();
}

std::string joinLines(std::string text) {
    return std::regex_replace(std::regex_replace(std::move(text), std::regex("<br>"), " "), std::regex("\\s+"), " ");
}

class HelpPagesTest : public testing::TestWithParam<const char*> {
  protected:
    fs::path folder() const { return kProject / "help" / GetParam(); }
    std::string read(const std::string& page) const { return readFile(folder() / page); }
};

INSTANTIATE_TEST_SUITE_P(Languages, HelpPagesTest, testing::Values("en", "de", "fr"),
                         [](const auto& language) { return std::string(language.param); });

TEST_P(HelpPagesTest, TheContentsListEveryPageWithATitleAndKeywords) {
    const std::vector<std::string> pages = listPages();
    std::set<std::string> listed(pages.begin(), pages.end());
    EXPECT_EQ(listed.size(), pages.size());
    std::set<std::string> found;
    std::set<std::string> titles;
    for (const auto& entry : fs::directory_iterator(folder()))
        if (entry.path().extension() == ".htm") found.insert(entry.path().filename().string());
    EXPECT_EQ(found, listed);
    for (const std::string& page : pages) {
        const std::string text = read(page);
        const auto title = findAll(text, "<title>([^<&]+)</title>");
        EXPECT_TRUE(title.size() == 1 && titles.insert(title.front()).second) << page;
        EXPECT_EQ(findAll(text, "<h1>([^<]+)</h1>"), title) << page;
        EXPECT_EQ(findAll(text, "<meta name=\"keywords\" content=\"([^\"&<]+)\">").size(), 1u) << page;
        // tools/make-help replaces them.
        EXPECT_EQ(findAll(text, "(<meta charset=\"utf-8\">|href=\"\\.\\./style\\.css\"|\n</?body>\n)").size(), 4u)
            << page;
    }
}

TEST_P(HelpPagesTest, EveryLinkAndPictureIsThere) {
    for (const std::string& page : listPages()) {
        const std::string text = read(page);
        for (const std::string& link : findAll(text, "<a\\s+href=\"([^\"]*)\"")) {
            const std::size_t mark = link.find('#');
            const std::string file = mark == 0 ? page : link.substr(0, mark);
            ASSERT_TRUE(fs::exists(folder() / file)) << page << ": " << link;
            if (mark == std::string::npos) continue;
            EXPECT_NE(read(file).find(" id=\"" + link.substr(mark + 1) + "\""), std::string::npos)
                << page << ": " << link;
        }
        for (const std::string& picture : findAll(text, "<img\\s+src=\"([^\"]*)\"\\s+alt=\"[^\"]+\""))
            EXPECT_TRUE(fs::exists(folder() / picture) || fs::exists(kProject / "help/en" / picture))
                << page << ": " << picture;
        EXPECT_EQ(findAll(text, "(<img)").size(), findAll(text, "<img\\s+src=\"images/([^\"]*)\"\\s+alt=\"").size());
    }
}

TEST_P(HelpPagesTest, EveryWindowHasItsChapter) {
    std::set<unsigned> topics;
    for (const HelpChapter& chapter : helpChapters()) {
        EXPECT_TRUE(topics.insert(chapter.topic).second) << chapter.topic;
        EXPECT_TRUE(fs::exists(folder() / chapter.file)) << chapter.file;
    }
    const std::string script = readFile(kProject / "resources/orvsconfig.rc");
    const std::string ids = readFile(kProject / "resources/resource.h");
    const auto dialogs = findAll(script, "\n(IDD_\\w+) DIALOGEX");
    EXPECT_GE(dialogs.size(), 14u);
    for (const std::string& dialog : dialogs) {
        const auto id = findAll(ids, "#define " + dialog + " (\\d+)");
        ASSERT_EQ(id.size(), 1u) << dialog;
        EXPECT_FALSE(helpChapter(static_cast<unsigned>(std::stoul(id.front()))).empty()) << dialog;
    }
}

TEST_P(HelpPagesTest, EveryMessageIsExplained) {
    const std::string page = read("messages.htm");
    // A language may have its help before its windows.
    const std::string script = fs::exists(scriptOf(GetParam())) ? readFile(scriptOf(GetParam())) : std::string();
    ASSERT_TRUE(!script.empty() || GetParam() != std::string("en"));
    std::map<std::string, std::string> rows;
    for (const std::string& row : findAll(page, "<tr (id=\"IDS_[\\s\\S]*?</tr>)"))
        rows[findAll(row, "^id=\"(\\w+)\"").front()] = joinLines(row);
    const std::vector<std::string> messages = listMessages();
    EXPECT_GE(messages.size(), 25u);
    for (const std::string& message : messages) {
        ASSERT_TRUE(rows.contains(message)) << message;
        const std::string& row = rows[message];
        EXPECT_GT(findAll(row, "</td><td>([\\s\\S]{20,})").size(), 0u) << message;
        if (script.empty()) continue;
        // Between what is filled in, the text stands there word for word.
        const std::string words = std::regex_replace(textOf(script, message), std::regex("%[ds][:.]?|\\\\n"), "\n");
        for (const std::string& part : findAll(words, "([^\n]{4,})"))
            EXPECT_NE(row.find(std::regex_replace(part, std::regex("^ | $"), "")), std::string::npos)
                << message << ": " << part;
    }
    EXPECT_EQ(rows.size(), messages.size()) << "a message is explained that the console does not have";
}

}  // namespace
}  // namespace orvc
