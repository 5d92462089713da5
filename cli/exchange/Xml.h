#pragma once

#include <rapidxml/rapidxml.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace snip {

using XmlNode = rapidxml::xml_node<char>;

/// A parsed XML document (UTF-8) that knows the lines of its elements.
class XmlDocument {
 public:
  /// Throws Malformed if the document is not well-formed, is nested too deeply, or has a document type or
  /// another encoding.
  explicit XmlDocument(std::string_view bytes);
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  const XmlNode& root() const { return *document_.first_node(); }
  /// From 1.
  std::size_t LineOf(const XmlNode& node) const { return LineAt(node.name()); }

 private:
  std::size_t LineAt(const char* place) const;

  std::string source_;  ///< As read, for counting lines.
  std::string parsed_;  ///< The parser's names and values point into it.
  rapidxml::xml_document<char> document_;
};

/// An element's own name, without the prefix of a name space.
std::string_view LocalName(const XmlNode& node);
/// The first child element of that name, in any name space; null if there is none.
const XmlNode* ChildOf(const XmlNode* node, std::string_view name);
/// The next sibling element of the same name.
const XmlNode* NextLike(const XmlNode& node);
/// All text of an element, CDATA included, with LF for line endings; empty for null.
std::string TextOf(const XmlNode* node);
/// An attribute's value; `otherwise` if it is missing.
std::string_view AttributeOf(const XmlNode& node, std::string_view name, std::string_view otherwise);

/// Text for an element. Blanks alone would be read as space between elements, so they become CDATA.
std::string XmlText(std::string_view text);
/// Text for an element or an attribute.
std::string XmlEscaped(std::string_view text);
/// The text as CDATA, even if it contains "]]>".
std::string XmlCharacterData(std::string_view text);
/// Replaces control characters that XML cannot hold with "?"; returns how many.
std::size_t ReplaceNonXml(std::string& text);

}  // namespace snip
