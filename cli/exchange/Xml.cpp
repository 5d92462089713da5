#include "cli/exchange/Xml.h"

#include <utf8cpp/utf8.h>

#include <algorithm>

#include "cli/system/Failure.h"

namespace snip {
namespace {

constexpr std::size_t kDeepest = 64;  // the parser recurses, and a snippet file needs six

std::size_t LineIn(std::string_view text, std::size_t at) {
  return 1 + static_cast<std::size_t>(
                 std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

/// The end of the tag that begins at `at`; a ">" in an attribute's value does not end it.
std::size_t EndOfTag(std::string_view xml, std::size_t at) {
  char quote = '\0';
  for (; at < xml.size(); ++at) {
    const char c = xml[at];
    if (quote == '\0' && c == '>') return at;
    if (quote == '\0' && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == quote) {
      quote = '\0';
    }
  }
  return std::string_view::npos;
}

/// Rejects documents that are nested too deeply, because the parser would recurse into them, and document
/// types, because their declarations could hide tags.
void CheckDepth(std::string_view xml) {
  std::size_t depth = 0;
  for (auto at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at)) {
    const std::string_view rest = xml.substr(at);
    auto end = std::string_view::npos;
    bool opens = false;
    if (rest.starts_with("<![CDATA[")) {
      end = xml.find("]]>", at + 9);
    } else if (rest.starts_with("<!--")) {
      end = xml.find("-->", at + 4);
    } else if (rest.starts_with("<?")) {
      end = xml.find("?>", at + 2);
    } else if (rest.starts_with("<!")) {
      throw Malformed(LineIn(xml, at), "a document type is not expected");
    } else {
      end = EndOfTag(xml, at);
      opens = end != std::string_view::npos && !rest.starts_with("</") && xml[end - 1] != '/';
      if (rest.starts_with("</") && depth > 0) --depth;
    }
    if (end == std::string_view::npos) return;  // the parser will report the error
    depth += opens ? 1 : 0;
    if (depth > kDeepest) throw Malformed(LineIn(xml, at), "elements are nested too deeply");
    at = end;
  }
}

std::string_view WithoutMark(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    throw Malformed(1, "the file is in UTF-16; save it as UTF-8");
  }
  return bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes;
}

}  // namespace

XmlDocument::XmlDocument(std::string_view bytes) : source_(WithoutMark(bytes)), parsed_(source_) {
  const auto zero = source_.find('\0');
  if (zero != std::string::npos) throw Malformed(LineIn(source_, zero), "not XML: there is a zero byte");
  const auto invalid = utf8::find_invalid(source_);
  if (invalid != std::string::npos) throw Malformed(LineIn(source_, invalid), "not UTF-8");
  CheckDepth(source_);
  try {
    document_.parse<rapidxml::parse_validate_closing_tags>(parsed_.data());
  } catch (const rapidxml::parse_error& error) {
    throw Malformed(LineAt(error.where<char>()), "not well-formed XML: " + std::string(error.what()));
  }
  if (document_.first_node() == nullptr) throw Malformed(1, "not XML: there is no element");
}

std::size_t XmlDocument::LineAt(const char* place) const {
  const auto at = static_cast<std::size_t>(place - parsed_.data());
  return LineIn(source_, std::min(at, source_.size()));
}

std::string_view LocalName(const XmlNode& node) {
  const std::string_view name(node.name(), node.name_size());
  const auto colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

const XmlNode* ChildOf(const XmlNode* node, std::string_view name) {
  if (node == nullptr) return nullptr;
  const XmlNode* child = node->first_node();
  while (child != nullptr && (child->type() != rapidxml::node_element || LocalName(*child) != name)) {
    child = child->next_sibling();
  }
  return child;
}

const XmlNode* NextLike(const XmlNode& node) {
  const XmlNode* next = node.next_sibling();
  while (next != nullptr && (next->type() != rapidxml::node_element || LocalName(*next) != LocalName(node))) {
    next = next->next_sibling();
  }
  return next;
}

std::string TextOf(const XmlNode* node) {
  std::string text;
  if (node == nullptr) return text;
  for (const XmlNode* part = node->first_node(); part != nullptr; part = part->next_sibling()) {
    const bool holdsText = part->type() == rapidxml::node_data || part->type() == rapidxml::node_cdata;
    if (holdsText) text.append(part->value(), part->value_size());
  }
  // XML line endings are LF; the parser does not convert them.
  std::string lines;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool carriageReturn = text[i] == '\r';
    if (carriageReturn && i + 1 < text.size() && text[i + 1] == '\n') continue;
    lines += carriageReturn ? '\n' : text[i];
  }
  // A character reference may have a number that is not a character.
  return utf8::replace_invalid(lines);
}

std::string_view AttributeOf(const XmlNode& node, std::string_view name, std::string_view otherwise) {
  const auto* attribute = node.first_attribute(name.data(), name.size());
  return attribute == nullptr ? otherwise : std::string_view(attribute->value(), attribute->value_size());
}

std::string XmlText(std::string_view text) {
  const bool onlyBlanks = !text.empty() && text.find_first_not_of(" \t\n") == std::string_view::npos;
  return onlyBlanks ? XmlCharacterData(text) : XmlEscaped(text);
}

std::string XmlEscaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string XmlCharacterData(std::string_view text) {
  std::string data = "<![CDATA[";
  constexpr std::string_view closer = "]]>";
  for (auto end = text.find(closer); end != std::string_view::npos; end = text.find(closer)) {
    data.append(text.substr(0, end + 2)).append("]]><![CDATA[");
    text.remove_prefix(end + 2);
  }
  return data.append(text).append(closer);
}

std::size_t ReplaceNonXml(std::string& text) {
  std::size_t count = 0;
  for (char& c : text) {
    const bool held = static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\n' || c == '\r';
    if (!held) c = '?';
    count += held ? 0 : 1;
  }
  return count;
}

}  // namespace snip
