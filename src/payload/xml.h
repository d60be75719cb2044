// Reading XML without decoding it: texts come back exactly as they stand in the file.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

namespace pugi {
class xml_document;
struct xml_node_struct;
}  // namespace pugi

namespace orvc {

// One element of a loaded document. Small, copied freely.
//
// Lifetime: it and the texts it returns are views into the document and into the bytes given to load(); both outlive
// it.
class XmlElement {
  public:
    // Compares the whole tag, in the case of the file.
    bool hasTag(const char* tag) const;

    // The first child element with `tag`; nothing when there is none.
    std::optional<XmlElement> firstChild(const char* tag) const;

    // The text between the quotes, entities and white space as they stand; nothing when there is no such attribute. Of
    // attributes with one name the first counts.
    std::optional<std::string_view> attribute(const char* name) const;

    // All that stands between the element's opening and closing tag, markup included; empty for <a/>. Walks through it
    // on each call.
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

    // Reads a document and forgets the one before. Returns false, with no root, for what is not one: no markup at all,
    // a tag that is not closed, text or a second element beside the root, another encoding than one of 8-bit
    // characters, or memory running out. A zero byte outside the root ends the document. Names and entities are not
    // checked, a "<" in an attribute and two attributes of one name are let through. `bytes` must stay as they are
    // while the document is used.
    bool load(std::string_view bytes);

    // The outermost element; nothing when the document has no element (a declaration alone, for instance).
    std::optional<XmlElement> root() const;

  private:
    std::unique_ptr<pugi::xml_document> document_;
    std::string_view bytes_;
};

}  // namespace orvc
