#include "payload/xml.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <pugixml.hpp>

namespace orvc {
namespace {

// No decoding of entities, line ends or white space. As a "fragment": otherwise pugixml drops texts beside the root,
// and load() could not reject them.
constexpr unsigned kParseAsItStands = pugi::parse_minimal | pugi::parse_fragment;

// A position in a document that pugixml has accepted, so every tag, quote and comment is closed. A search that still
// fails stops at the end of the bytes.
class Cursor {
  public:
    Cursor(std::string_view bytes, std::size_t at) : bytes_(bytes), at_(at) {}

    std::size_t position() const { return at_; }
    bool atEnd() const { return at_ >= bytes_.size(); }
    bool sees(std::string_view text) const { return bytes_.substr(at_).starts_with(text); }

    void goTo(std::string_view text) {
        const std::size_t found = bytes_.find(text, at_);
        at_ = found == std::string_view::npos ? bytes_.size() : found;
    }
    void skip(std::size_t count) { at_ = std::min(at_ + count, bytes_.size()); }
    void goPast(std::string_view text) {
        goTo(text);
        skip(text.size());
    }

    // Moves from inside an opening tag to its end. Returns whether the tag also closes the element, as <a/> does.
    bool leaveOpeningTag() {
        bool closed = false;
        for (; !atEnd(); skip(1)) {
            const char c = bytes_[at_];
            if (c == '>') break;
            closed = c == '/';
            if (c == '"' || c == '\'') {
                skip(1);
                goTo(bytes_.substr(at_ - 1, 1));
            }
        }
        skip(1);
        return closed;
    }

  private:
    std::string_view bytes_;
    std::size_t at_;
};

// Moves from the end of an element's opening tag to its closing tag.
void goToClosingTag(Cursor& cursor) {
    std::size_t depth = 1;
    for (cursor.goTo("<"); !cursor.atEnd(); cursor.goTo("<")) {
        if (cursor.sees("</")) {
            if (--depth == 0) return;
            cursor.goPast(">");
        } else if (cursor.sees("<!--")) {
            cursor.skip(4);
            cursor.goPast("-->");
        } else if (cursor.sees("<![CDATA[")) {
            cursor.goPast("]]>");
        } else if (cursor.sees("<?")) {
            cursor.skip(2);
            cursor.goPast("?>");
        } else {
            cursor.skip(1);
            if (!cursor.leaveOpeningTag()) ++depth;
        }
    }
}

}  // namespace

bool XmlElement::hasTag(const char* tag) const {
    return std::strcmp(pugi::xml_node(node_).name(), tag) == 0;
}

std::optional<XmlElement> XmlElement::firstChild(const char* tag) const {
    const pugi::xml_node child = pugi::xml_node(node_).child(tag);
    if (!child) return std::nullopt;
    return XmlElement(child.internal_object(), bytes_);
}

std::optional<std::string_view> XmlElement::attribute(const char* name) const {
    const pugi::xml_attribute attribute = pugi::xml_node(node_).attribute(name);
    if (!attribute) return std::nullopt;
    return attribute.value();
}

std::string_view XmlElement::content() const {
    // Names and values have the same offsets in pugixml's copy as in the bytes.
    const pugi::xml_node node(node_);
    const std::ptrdiff_t offset = node.offset_debug();
    if (offset < 0) return {};
    std::size_t at = static_cast<std::size_t>(offset);
    if (const pugi::xml_attribute last = node.last_attribute()) {
        const std::string_view value = last.value();
        // After its closing quote.
        at += static_cast<std::size_t>(value.data() + value.size() + 1 - node.name());
    }
    Cursor cursor(bytes_, at);
    if (cursor.leaveOpeningTag()) return {};
    const std::size_t begin = cursor.position();
    goToClosingTag(cursor);
    return bytes_.substr(begin, cursor.position() - begin);
}

XmlDocument::XmlDocument() : document_(std::make_unique<pugi::xml_document>()) {}

XmlDocument::~XmlDocument() = default;

bool XmlDocument::load(std::string_view bytes) {
    bytes_ = bytes;
    document_->reset();
    // pugixml accepts no bytes, blanks and zeros as a document without elements.
    if (bytes.find('<') == std::string_view::npos) return false;
    // Use the bytes as they are, whatever encoding the declaration names.
    bool good = document_->load_buffer(bytes.data(), bytes.size(), kParseAsItStands, pugi::encoding_utf8);
    bool hasRoot = false;
    for (pugi::xml_node node = document_->first_child(); good && node; node = node.next_sibling()) {
        good = node.type() == pugi::node_element && !hasRoot;
        hasRoot = true;
    }
    if (!good) document_->reset();
    return good;
}

std::optional<XmlElement> XmlDocument::root() const {
    const pugi::xml_node root = document_->document_element();
    if (!root) return std::nullopt;
    return XmlElement(root.internal_object(), bytes_);
}

}  // namespace orvc
