// The sources of the help: complete in every language, links that lead somewhere, the punctuation of each language.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "resources/resource.h"
#include "support/help_chapters.h"
#include "view/shortcuts.h"

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
        "WAIT|SCHEDULE|COPY|FILTER|LINK|COUNT|EMPTY|DONE|NOT_STORED|WHY|KEY|MENU|DETAIL|DELAY|CONTENT|PROBLEM|SENTENCE|"
        "SAVE|REASON)_.*|IDS_("
        "RECORDING|PROGRESS|DIGIT_GROUPS|LIST_SEPARATOR|DELETE_EVENTS_MORE|SERVER_DELETE_IN_USE)|.*_(CAPTION|"
        "UNASSIGNED)|IDS_EMAIL_(CHOSEN|ERROR|SELECT|TEST_SEND)|IDS_LOGON_(REQUIRED|"
        "WAITING|COUNTDOWN)|IDS_LOGGING_IN|IDS_MODIFY_EVENT|IDS_SOURCE_SERVER|IDS_(EVERY|ALL|NO)_DAYS?|IDS_VARIABLE_"
        "TIMES|IDS_HOUR_NONE|"
        "IDS_[AP]M|IDS_TIME_[AP]M|IDS_NEVER|IDS_MIDNIGHT|IDS_NOON|IDS_SECONDS|IDS_MINUTES|"
        "IDS_(SUN|MON|TUES|WEDNES|THURS|FRI|SATUR)DAY|IDS_SOCKETS_FAILED|IDS_RESOURCE_REVISION");
    std::vector<std::string> messages;
    for (const std::string& name : findAll(readFile(kProject / "resources/resource.h"), "#define (IDS_\\w+) "))
        if (!std::regex_match(name, elsewhere)) messages.push_back(name);
    return messages;
}

// The texts of a language's windows.
std::string readScript(const std::string& language) {
    static const std::map<std::string, std::string> files{
        {"en", "orvsconfig.rc"}, {"de", "languages/german.rc"}, {"fr", "languages/french.rc"}};
    return readFile(kProject / "resources" / files.at(language));
}

// The texts of a language's windows, by id.
struct ScriptTexts final : StringTable {
    explicit ScriptTexts(const std::string& language) : script(readScript(language)) {}
    std::string text(unsigned id) const override { return find("IDS", id, "\n    ", " \"([^\"]*)\""); }
    // The words of a menu item; empty for a command that has none.
    std::string menuItem(unsigned id) const {
        const std::string words = find("IDM", id, "MENUITEM \"([^\"]*)\", ", "\n");
        return std::regex_replace(words, std::regex("&"), "");
    }

  private:
    std::string find(const std::string& kind, unsigned id, const std::string& before, const std::string& after) const {
        const auto name = findAll(ids, "#define (" + kind + "_\\w+) " + std::to_string(id) + "\\b");
        if (name.empty()) return {};
        const auto found = findAll(script, before + name.front() + after);
        return found.empty() ? std::string() : found.front();
    }

    std::string ids = readFile(kProject / "resources/resource.h");
    std::string script;
};

// A page as a person reads it, without tags and without names of files and the like.
std::string readableText(const std::string& page) {
    static const std::regex unread("<code>[^<]*</code>|<[^>]*>");
    return std::regex_replace(std::regex_replace(page, unread, ""), std::regex("&[lg]t;"), ">");
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
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(folder()))
        files += entry.path().extension() == ".htm";
    EXPECT_EQ(files, pages.size());
    std::set<std::string> titles;
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

// Pictures are missed by tools/make-help.
TEST_P(HelpPagesTest, EveryLinkIsThere) {
    for (const std::string& page : listPages()) {
        for (const std::string& link : findAll(read(page), "<a\\s+href=\"([^\"]*)\"")) {
            const std::size_t mark = link.find('#');
            const std::string file = mark == 0 ? page : link.substr(0, mark);
            ASSERT_TRUE(fs::exists(folder() / file)) << page << ": " << link;
            if (mark == std::string::npos) continue;
            EXPECT_NE(read(file).find(" id=\"" + link.substr(mark + 1) + "\""), std::string::npos)
                << page << ": " << link;
        }
    }
}

TEST_P(HelpPagesTest, EveryChapterIsThere) {
    for (const HelpChapter& chapter : helpChapters())
        EXPECT_TRUE(fs::exists(folder() / chapter.file)) << chapter.file;
}

TEST(HelpChapters, EveryWindowHasOne) {
    const std::string ids = readFile(kProject / "resources/resource.h");
    const auto dialogs = findAll(readFile(kProject / "resources/orvsconfig.rc"), "\n(IDD_\\w+) DIALOGEX");
    EXPECT_GE(dialogs.size(), 14u);
    for (const std::string& dialog : dialogs) {
        const auto id = findAll(ids, "#define " + dialog + " (\\d+)");
        ASSERT_EQ(id.size(), 1u) << dialog;
        EXPECT_FALSE(helpChapter(static_cast<unsigned>(std::stoul(id.front()))).empty()) << dialog;
    }
}

TEST_P(HelpPagesTest, EveryMessageIsExplained) {
    const std::string script = readScript(GetParam());
    std::map<std::string, std::string> rows;
    for (const std::string& row : findAll(read("messages.htm"), "<tr (id=\"IDS_[\\s\\S]*?</tr>)"))
        rows[findAll(row, "^id=\"(\\w+)\"").front()] = std::regex_replace(row, std::regex("(\\s|<br>)+"), " ");
    const std::vector<std::string> messages = listMessages();
    EXPECT_GE(messages.size(), 25u);
    for (const std::string& message : messages) {
        const std::string& row = rows[message];
        EXPECT_GT(findAll(row, "</td><td>([\\s\\S]{20,})").size(), 0u) << message;
        const auto texts = findAll(script, "\n    " + message + " \"([^\"]*)\"");
        ASSERT_EQ(texts.size(), 1u) << message;
        // Between what is filled in, the text stands there word for word.
        const std::string words = std::regex_replace(texts.front(), std::regex(" ?(%[ds][:.]?|\\\\n) ?"), "\n");
        for (const std::string& part : findAll(words, "([^\n]{4,})"))
            EXPECT_NE(row.find(part), std::string::npos) << message << ": " << part;
    }
    EXPECT_EQ(rows.size(), messages.size()) << "a message is explained that the console does not have";
}

// In the words of the column, with what it means and what to do.
TEST_P(HelpPagesTest, EveryProblemOfEventsIsExplained) {
    const std::string script = readScript(GetParam());
    const auto rows = findAll(read("problems.htm"), "<tr (id=\"IDS_[\\s\\S]*?</tr>)");
    const auto problems = findAll(readFile(kProject / "resources/resource.h"), "#define (IDS_PROBLEM_SHORT_\\w+) ");
    EXPECT_GE(problems.size(), 19u);
    EXPECT_EQ(rows.size(), problems.size());
    for (const std::string& problem : problems) {
        const auto words = findAll(script, "\n    " + problem + " \"([^\"]*)\"");
        ASSERT_EQ(words.size(), 1u) << problem;
        const std::string start = "id=\"" + problem + "\"><td>" + words.front() + "</td><td>";
        const auto row = std::ranges::find_if(rows, [&](const std::string& each) { return each.starts_with(start); });
        ASSERT_NE(row, rows.end()) << start;
        EXPECT_EQ(findAll(*row, "(<td>[^<]+)").size(), 3u) << *row;
    }
}

// In the language's own names of keys, in one row with the words of the menu.
TEST_P(HelpPagesTest, EveryShortcutIsOnThePageOfTheKeyboard) {
    const ScriptTexts texts(GetParam());
    const auto rows = findAll(read("keyboard.htm"), "(<tr>[\\s\\S]*?</tr>)");
    EXPECT_GE(shortcuts().size(), 14u);
    std::set<std::string> keys;
    for (const Shortcut& shortcut : shortcuts()) {
        const std::string key = shortcutText(texts, shortcut);
        EXPECT_TRUE(keys.insert(key).second) << key << " is the key of two commands";
        const auto row = std::ranges::find_if(
            rows, [&](const std::string& each) { return each.find("<kbd>" + key + "</kbd>") != std::string::npos; });
        ASSERT_NE(row, rows.end()) << key;
        EXPECT_NE(row->find(texts.menuItem(shortcut.command)), std::string::npos) << key << ": " << *row;
    }
}

TEST_P(HelpPagesTest, PagesAndScriptKeepTheSignsOfTheirLanguage) {
    const std::string language = GetParam();
    // An ellipsis is three dots. English alone has straight quotation marks.
    std::string wrong = "\u2026";
    if (language != "en") wrong += "|\"|'(%s|\\.\\.\\.)'";
    // A no-break space, here "~", stands before a sign of two parts and inside quotation marks.
    if (language == "fr") wrong += "|(^|[^~])([:;?!](?=\\s|$)|\u00bb)|\u00ab(?!~)";
    const std::regex expression("[^\n]{0,30}(" + wrong + ")");
    const auto expectNone = [&](const std::string& text, const std::string& where) {
        static const std::regex noBreakSpace("\u00a0");
        const std::string marked = std::regex_replace(text, noBreakSpace, "~");
        std::smatch found;
        EXPECT_FALSE(std::regex_search(marked, found, expression)) << where << ": " << found.str();
    };
    for (const std::string& page : listPages())
        expectNone(readableText(read(page)), page);
    const std::string script = std::regex_replace(readScript(language), std::regex("\\\\n"), "\n");
    for (const std::string& text : findAll(script, "\"([^\"]*)\""))
        expectNone(text, "script");
}

}  // namespace
}  // namespace orvc
