#include "cli/exchange/VisualStudioSnippets.h"

#include <utf8cpp/utf8.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

#include "cli/system/Failure.h"
#include "cli/exchange/Xml.h"
#include "library/CodeFields.h"
#include "platform/Text.h"

namespace snip {
namespace {

using Defaults = std::map<std::string, std::string, std::less<>>;

/// The placeholders of a snippet: the declared ones, and the two predefined ones.
Defaults PlaceholdersOf(const XmlNode* content) {
  Defaults defaults = {{"end", ""}, {"selected", ""}};
  const XmlNode* const declarations = ChildOf(content, "Declarations");
  for (const char* kind : {"Literal", "Object"}) {
    for (const XmlNode* each = ChildOf(declarations, kind); each != nullptr; each = NextLike(*each)) {
      defaults[TextOf(ChildOf(each, "ID"))] = TextOf(ChildOf(each, "Default"));
    }
  }
  return defaults;
}

struct Filled {
  std::string code;
  std::size_t placeholders = 0;
};

/// The field that represents a placeholder with that default, which a later mention does not repeat; nothing
/// if none can.
std::optional<std::string> FieldFor(const std::string& id, const std::string& text, bool mentioned) {
  if (id == "end") return WrittenField(std::string(kEndField));
  if (id == "selected") return WrittenField(std::string(kSelectionField));
  if (IsAnswered(id) && id != text) return std::nullopt;
  const auto whole = id == text ? WrittenField(id) : WrittenField(id, {text});
  return whole && mentioned ? WrittenField(id) : whole;
}

/// The code with every placeholder replaced by a field, with `asFields`, or by its default text. Throws
/// std::length_error if that adds more than a megabyte.
Filled Fill(std::string_view code, std::string_view delimiter, const Defaults& defaults, bool asFields) {
  Filled filled;
  std::set<std::string> mentioned;
  const std::size_t longest = code.size() + (1U << 20U);
  while (!code.empty()) {
    const auto begin = code.find(delimiter);
    filled.code.append(code.substr(0, begin));
    if (begin == std::string_view::npos) break;
    code.remove_prefix(begin);
    const auto end = code.find(delimiter, delimiter.size());
    const auto known = end == std::string_view::npos
                           ? defaults.end()
                           : defaults.find(code.substr(delimiter.size(), end - delimiter.size()));
    if (known == defaults.end()) {
      // Delimiters around another name are text; the second one may begin a placeholder.
      filled.code.append(delimiter);
      code.remove_prefix(delimiter.size());
      continue;
    }
    const bool again = !mentioned.insert(known->first).second;
    const auto field = asFields ? FieldFor(known->first, known->second, again) : std::nullopt;
    filled.code.append(field.value_or(known->second));
    if (filled.code.size() > longest)
      throw std::length_error("expanded placeholders are longer than the limit");
    if (!field) ++filled.placeholders;
    code.remove_prefix(end + delimiter.size());
  }
  return filled;
}

/// The number of properties that a library cannot hold, except empty ones.
std::size_t OtherFieldsOf(const XmlNode* header, const XmlNode* content, bool helpIsPath) {
  std::size_t count = 0;
  for (const char* name : {"Shortcut", "Author", "HelpUrl"}) {
    const bool isPath = helpIsPath && std::string_view(name) == "HelpUrl";
    if (!isPath && !Trim(TextOf(ChildOf(header, name))).empty()) ++count;
  }
  if (ChildOf(ChildOf(header, "Keywords"), "Keyword") != nullptr) ++count;
  if (ChildOf(ChildOf(content, "Imports"), "Import") != nullptr) ++count;
  if (ChildOf(ChildOf(content, "References"), "Reference") != nullptr) ++count;
  return count;
}

void ReadSnippet(const XmlDocument& document, const XmlNode& element, const ImportOptions& options,
                 SnippetImporter& importer) {
  const XmlNode* const header = ChildOf(&element, "Header");
  const XmlNode* const content = ChildOf(&element, "Snippet");
  const XmlNode* const title = ChildOf(header, "Title");
  if (title == nullptr) throw Malformed(document.LineOf(element), "a CodeSnippet has no Header with a Title");
  SnippetImporter::Foreign foreign{.name = TextOf(title),
                                   .attachment = TextOf(ChildOf(header, "HelpUrl")),
                                   .description = TextOf(ChildOf(header, "Description")),
                                   .code = {}};
  const XmlNode* const code = ChildOf(content, "Code");
  if (code == nullptr) return importer.report().Note(Loss::NoCode, foreign.name);
  const std::string language(AttributeOf(*code, "Language", "VB"));
  if (!options.allLanguages && !EqualsIgnoringAsciiCase(language, "VB")) {
    return importer.report().Note(Loss::OtherLanguage, foreign.name, 1, utf8::replace_invalid(language));
  }
  foreign.code = TextOf(code);

  const std::string_view delimiter = AttributeOf(*code, "Delimiter", "$");
  if (!delimiter.empty()) {
    Filled filled;
    try {
      filled = Fill(foreign.code, delimiter, PlaceholdersOf(content), options.templates == Templates::Fields);
    } catch (const std::length_error& error) {
      throw Malformed(document.LineOf(element), error.what());
    }
    if (filled.placeholders > 0 && options.templates == Templates::Skip) {
      return importer.report().Note(Loss::Template, foreign.name);
    }
    if (options.templates == Templates::Fill || options.templates == Templates::Fields) {
      foreign.code = std::move(filled.code);
      importer.report().Note(Loss::Placeholders, foreign.name, filled.placeholders);
    }
  }
  const bool helpIsPath = foreign.attachment.find("://") == std::string::npos;
  importer.report().Note(Loss::OtherFields, foreign.name, OtherFieldsOf(header, content, helpIsPath));
  if (!helpIsPath) foreign.attachment.clear();
  importer.Add(foreign);
}

/// A character that the code does not contain.
std::string DelimiterFor(std::string_view code) {
  for (const char candidate : std::string_view("$~@^`|#%&!;?")) {
    if (code.find(candidate) == std::string_view::npos) return {candidate};
  }
  // A character outside all single-byte code pages, so no library contains it.
  return utf8::utf32to8(U"\u2588");
}

/// The names between two "$" in a template, as placeholders with their names as defaults.
Defaults NamesIn(std::string_view code) {
  const auto inName = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  };
  Defaults names;
  for (auto at = code.find('$'); at != std::string_view::npos; at = code.find('$', at + 1)) {
    const auto end = code.find('$', at + 1);
    if (end == std::string_view::npos) break;
    const std::string_view name = code.substr(at + 1, end - at - 1);
    if (name.empty() || !std::all_of(name.begin(), name.end(), inName)) continue;
    if (name != "end" && name != "selected") names.emplace(name, name);
    at = end;
  }
  return names;
}

struct Template {
  std::string code;
  Defaults placeholders;
};

/// The code with a placeholder for each of its fields.
Template WithPlaceholders(std::string_view code, const std::string& delimiter) {
  Template result;
  Defaults ids;  // by the fields' names in small letters
  const auto asked = AskedFields(code);
  const auto idOf = [&](const CodeField& field) -> std::string {
    if (EqualsIgnoringAsciiCase(field.name, kEndField)) return "end";
    if (EqualsIgnoringAsciiCase(field.name, kSelectionField)) return "selected";
    const auto known = std::find_if(ids.begin(), ids.end(), [&](const auto& each) {
      return EqualsIgnoringAsciiCase(each.first, field.name);
    });
    if (known != ids.end()) return known->second;
    std::string id = field.name;
    const auto inId = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; };
    std::replace_if(id.begin(), id.end(), std::not_fn(inId), '_');
    while (result.placeholders.contains(id) || id == "end" || id == "selected") id += '_';
    const auto first = std::find_if(asked.begin(), asked.end(), [&](const CodeField& each) {
      return EqualsIgnoringAsciiCase(each.name, field.name) && !each.choices.empty();
    });
    result.placeholders[id] = first != asked.end() ? first->choices.front() : field.name;
    return ids[field.name] = id;
  };
  std::size_t done = 0;
  for (const CodeField& field : FieldsIn(code)) {
    result.code.append(code.substr(done, field.begin - done));
    result.code.append(delimiter).append(idOf(field)).append(delimiter);
    done = field.end;
  }
  result.code.append(code.substr(done));
  return result;
}

std::string Declarations(const Defaults& placeholders) {
  if (placeholders.empty()) return {};
  std::string xml = "      <Declarations>\n";
  for (const auto& [id, text] : placeholders) {
    xml.append("        <Literal>\n          <ID>").append(id).append("</ID>\n          <Default>");
    xml.append(XmlText(text)).append("</Default>\n        </Literal>\n");
  }
  return xml + "      </Declarations>\n";
}

}  // namespace

Imported ReadVisualStudioSnippets(std::string_view bytes, const ImportOptions& options,
                                  const CodePage& page) {
  const XmlDocument document(bytes);
  const XmlNode& root = document.root();
  const bool single = LocalName(root) == "CodeSnippet";
  if (!single && LocalName(root) != "CodeSnippets") {
    throw Malformed(document.LineOf(root), "not a snippet file: its root is not CodeSnippets");
  }
  SnippetImporter importer(page);
  for (const XmlNode* each = single ? &root : ChildOf(&root, "CodeSnippet"); each != nullptr;
       each = NextLike(*each)) {
    ReadSnippet(document, *each, options, importer);
  }
  return importer.Finish();
}

std::string WriteVisualStudioSnippets(std::span<const Snippet> snippets, bool asTemplates,
                                      const CodePage& page, ConversionReport& report) {
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
      "<CodeSnippets xmlns=\"http://schemas.microsoft.com/VisualStudio/2005/CodeSnippet\">\n";
  for (const Snippet& snippet : snippets) {
    std::size_t otherLineEndings = 0;
    std::size_t lost = 0;
    const auto text = [&](std::string_view ansi) {
      ConvertedLines lines = ToForeignText(ansi, page);
      otherLineEndings += lines.changed;
      lost += ReplaceNonXml(lines.text);
      return lines.text;
    };
    const std::string code = text(snippet.Code);
    const std::string delimiter = asTemplates ? "$" : DelimiterFor(code);
    const Template written = asTemplates ? Template{code, NamesIn(code)} : WithPlaceholders(code, delimiter);
    xml += "  <CodeSnippet Format=\"1.0.0\">\n    <Header>\n      <Title>" + XmlText(text(snippet.Name)) +
           "</Title>\n      <Description>" + XmlText(text(snippet.Description)) + "</Description>\n";
    if (!snippet.Attachment.empty()) {
      xml += "      <HelpUrl>" + XmlText(text(snippet.Attachment)) + "</HelpUrl>\n";
    }
    xml += "    </Header>\n    <Snippet>\n" + Declarations(written.placeholders) +
           "      <Code Language=\"VB\" Delimiter=\"" + XmlEscaped(delimiter) + "\">" +
           XmlCharacterData(written.code) + "</Code>\n    </Snippet>\n  </CodeSnippet>\n";
    const std::string name = page.ToUtf8(snippet.Name);
    report.Note(Loss::Characters, name, lost);
    report.Note(Loss::LineEndings, name, otherLineEndings);
    if (snippet.Attachment.find("://") != std::string::npos) report.Note(Loss::Attachment, name);
    ++report.carried;
  }
  return xml + "</CodeSnippets>\n";
}

}  // namespace snip
