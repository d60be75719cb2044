#include "toolkit/xml.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace orvc {
namespace {

using namespace std::string_literals;

// The content of the child "a" of the root, or what is missing.
std::string contentOfA(std::string_view bytes) {
    XmlDocument document;
    if (!document.load(bytes)) return "(not loaded)";
    const auto root = document.root();
    if (!root) return "(no root)";
    const auto child = root->firstChild("a");
    return child ? std::string(child->content()) : "(no child)";
}

TEST(Xml, ContentIsTakenAsItStands) {
    const std::pair<std::string, std::string> cases[] = {
        {"<r><a x='1' /><a>second</a></r>", ""},
        {"<r><b>no</b><A>no</A><aa>no</aa><a>yes</a></r>", "yes"},
        {"<r><b><a>too deep</a></b></r>", "(no child)"},
        {"<r><a>&amp;&lt;&#65;&unknown;&</a></r>", "&amp;&lt;&#65;&unknown;&"},
        {"<r><a>1 > 0, ]]> and -->\r\rline\n</a></r>", "1 > 0, ]]> and -->\r\rline\n"},
        {"\xEF\xBB\xBF<r><a>behind a mark</a></r>", "behind a mark"},
        {"<?xml version=\"1.0\" encoding=\"utf-16\"?><r><a>as \xE9 is</a></r>", "as \xE9 is"},
        {"<!DOCTYPE r [<!ELEMENT a ANY>]><!-- <r><a>no</a></r> --><r><a>x</a></r>", "x"},
        // Tags in what looks like tags.
        {"<r><a x=\"</a>\" y='/>\"'>x</a ></r>", "x"},
        {"<r><a><b>1</b><a>2</a><b/><b x='/>'>3</b></a></r>", "<b>1</b><a>2</a><b/><b x='/>'>3</b>"},
        {"<r><a><!-- </a> --><![CDATA[</a>]]><?p </a>?><!--->--></a></r>",
         "<!-- </a> --><![CDATA[</a>]]><?p </a>?><!--->-->"},
        {"<r><a>x</a></r>\r\n\0garbage"s, "x"},
    };
    for (const auto& [bytes, content] : cases)
        EXPECT_EQ(contentOfA(bytes), content) << bytes;
}

TEST(Xml, WhatIsNoDocumentIsRefused) {
    const std::string refused[] = {
        "",
        "<r>",
        "<r><a></r></a>",
        "<r/><r/>",
        "<r a=1/>",
        "<r a='1'b='2'/>",
        "<r a=\"say \"yes\"\"/>",
        "<r a='1\"/>",
        "<r><!-- </r>",
        "<r><![CDATA[ </r>",
        "<r>zero\0</r>"s,
        "<!DOCTYPE r [",
    };
    XmlDocument document;
    for (const std::string& bytes : refused) {
        EXPECT_FALSE(document.load(bytes)) << bytes;
        EXPECT_FALSE(document.root()) << bytes;
    }
}

std::string repeat(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

// A reader that recurses or starts over at each element does not get through these.
TEST(Xml, DepthAndNumberCostNoStackAndLinearTime) {
    constexpr std::size_t kMany = 100'000;
    const std::string inner = repeat("<a>", kMany) + repeat("</a>", kMany);
    EXPECT_EQ(contentOfA("<r><a>" + inner + "</a></r>"), inner);
    EXPECT_EQ(contentOfA("<r>" + repeat("<a>", kMany)), "(not loaded)");
    EXPECT_EQ(contentOfA("<r>" + repeat("<b/>x", kMany) + "<a>last</a></r>"), "last");
    EXPECT_EQ(contentOfA(repeat("<!DOCTYPE r [<![", kMany)), "(not loaded)");
    std::string attributes = "<r><a ";
    for (std::size_t i = 0; i < kMany; ++i)
        attributes.append("x").append(std::to_string(i)).append("=\"<>\" ");
    EXPECT_EQ(contentOfA(attributes + ">y</a></r>"), "y");
    const std::string large = repeat("0123456789 &amp; %0d%0a", 50'000'000 / 23);
    EXPECT_EQ(contentOfA("<r><a>" + large + "</a></r>"), large);
}

// Looks at everything in documents that were damaged at random; the sanitizers watch.
TEST(Xml, DamagedDocumentsAreReadWithinTheirBytes) {
    constexpr std::string_view kWhole =
        "<?xml version=\"1.0\"?><!DOCTYPE r []><r x='1'>\r\n<a b=\"2\"><!--c--><d/><![CDATA[e]]><?f?>&amp;</a></r>";
    constexpr std::string_view kBytes =
        "<>/\"'=!-[]?& ra\0\xEF"
        "DC";
    std::mt19937 random(20'261'121);
    std::size_t loaded = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::vector<char> bytes(kWhole.begin(), kWhole.end());
        for (std::size_t change = random() % 4; change != std::size_t(-1); --change) {
            const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size());
            if (random() % 2 == 0)
                bytes.insert(at, kBytes[random() % kBytes.size()]);
            else
                bytes.erase(at, std::min(at + 1 + random() % 8, bytes.end() - 1));
        }
        bytes.shrink_to_fit();
        const std::string_view view(bytes.data(), bytes.size());
        XmlDocument document;
        if (!document.load(view)) continue;
        const auto root = document.root();
        if (!root) continue;
        ++loaded;
        for (const auto& element : {root, root->firstChild("a")}) {
            if (!element) continue;
            element->attribute("b");
            const std::string_view content = element->content();
            // It ends where a closing tag begins, unless the element has none.
            ASSERT_TRUE(content.empty() || std::string_view(content.data() + content.size(), 2) == "</") << view;
        }
    }
    EXPECT_GT(loaded, 1000u);
}

}  // namespace
}  // namespace orvc
