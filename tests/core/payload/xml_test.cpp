#include "payload/xml.h"

#include <gtest/gtest.h>

#include <string>

namespace orvc {
namespace {

using namespace std::string_literals;

constexpr char kRefused[] = "(not loaded)";

// The content of the child "a" of the root, or what is missing.
std::string contentOfA(std::string_view bytes) {
    XmlDocument document;
    if (!document.load(bytes)) return document.root() ? "(a root of what was not loaded)" : kRefused;
    const auto root = document.root();
    if (!root) return "(no root)";
    const auto child = root->firstChild("a");
    return child ? std::string(child->content()) : "(no child)";
}

TEST(Xml, ContentIsTakenAsItStandsAndWhatIsNoDocumentRefused) {
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
        {"", kRefused},
        {"<r>", kRefused},
        {"<r><a></r></a>", kRefused},
        {"<r/><r/>", kRefused},
        {"<r a='1'b='2'/>", kRefused},
        {"<r a=\"say \"yes\"\"/>", kRefused},
        {"<r><!-- </r>", kRefused},
        {"<r>zero\0</r>"s, kRefused},
    };
    for (const auto& [bytes, content] : cases)
        EXPECT_EQ(contentOfA(bytes), content) << bytes;
}

std::string repeat(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

// A reader that recurses or starts over at each element does not get through these.
TEST(Xml, DepthAndNumberCostNoStackAndLinearTime) {
    constexpr std::size_t kMany = 100'000;
    const std::string inner = repeat("<a>", kMany) + repeat("</a>", kMany);
    EXPECT_EQ(contentOfA("<r><a>" + inner + "</a></r>"), inner);
    EXPECT_EQ(contentOfA("<r>" + repeat("<a>", kMany)), kRefused);
    EXPECT_EQ(contentOfA("<r>" + repeat("<b/>x", kMany) + "<a>last</a></r>"), "last");
    EXPECT_EQ(contentOfA(repeat("<!DOCTYPE r [<![", kMany)), kRefused);
    EXPECT_EQ(contentOfA("<r><a " + repeat("x=\"<>\" ", kMany) + ">y</a></r>"), "y");
}

}  // namespace
}  // namespace orvc
