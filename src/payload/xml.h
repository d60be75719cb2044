// Reads XML without decoding it: texts are returned exactly as they are in the file.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

namespace pugi {
class xml_document;
struct xml_node_struct;
}  // namespace pugi

namespace orvc {

// One element of a loaded document. Cheap to copy.
//
// Lifetime: it and the texts that it returns are views into the document and into the bytes given to load(). Both must
// outlive it.
class XmlElement {
  public:
    // Compares the whole tag; case matters.
    bool hasTag(const char* tag) const;

    // The first child element with `tag`; empty if there is none.
    std::optional<XmlElement> firstChild(const char* tag) const;

    // The text between the quotes, with entities and white space unchanged; empty if there is no such attribute. If
    // several attributes have this name, the first one counts.
    std::optional<std::string_view> attribute(const char* name) const;

    // Everything between the element's opening and closing tag, including markup; empty for <a/>. Each call searches
    // for the closing tag.
    std::string_view content() const;

  private:
    friend class XmlDocument;
    XmlElement(pugi::xml_node_struct* node, std::string_view bytes) : node_(node), bytes_(bytes) {}

    pugi::xml_node_struct* node_;
    std::string_view bytes_;
};

// An XML document in 8-bit characters.
//
// Thread: any, one at a time. Time and memory grow linearly with the bytes, however deep elements are nested; the bytes
// are copied once.
class XmlDocument {
  public:
    XmlDocument();
    ~XmlDocument();
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    // Replaces the document. Returns false, without a root, if `bytes` are not a document (no markup at all, a tag that
    // is not closed, text or a second element beside the root, an encoding that is not 8-bit) or memory runs out. A
    // zero byte outside the root ends the document. Does not check names and entities; accepts a "<" in an attribute
    // and several attributes with one name. `bytes` must not change while the document is used.
    bool load(std::string_view bytes);

    // The outermost element; empty if the document has none (only a declaration, for instance).
    std::optional<XmlElement> root() const;

  private:
    std::unique_ptr<pugi::xml_document> document_;
    std::string_view bytes_;
};

}  // namespace orvc
