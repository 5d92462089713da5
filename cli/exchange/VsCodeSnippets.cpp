#include "cli/exchange/VsCodeSnippets.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>

#include "cli/system/Failure.h"
#include "cli/exchange/Json.h"
#include "cli/exchange/SnippetTemplate.h"
#include "cli/exchange/UniqueNames.h"
#include "platform/Text.h"

namespace snip {
namespace {

/// A text, or an array of its lines; nothing for anything else.
std::optional<std::string> TextOf(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_array()) return std::nullopt;
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (!value[i].is_string()) return std::nullopt;
    text.append(i > 0 ? "\n" : "").append(value[i].get<std::string>());
  }
  return text;
}

OrderedJson LinesOf(std::string_view text) {
  OrderedJson lines = OrderedJson::array();
  for (;;) {
    const auto end = text.find('\n');
    lines.push_back(std::string(text.substr(0, end)));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

/// Whether a comma-separated list of languages has Visual Basic in it.
bool IsForVisualBasic(std::string_view scope) {
  while (!scope.empty()) {
    const auto comma = scope.find(',');
    if (EqualsIgnoringAsciiCase(Trim(scope.substr(0, comma)), "vb")) return true;
    scope.remove_prefix(comma == std::string_view::npos ? scope.size() : comma + 1);
  }
  return false;
}

bool SaysMoreThanTheName(const Json& prefix, const std::string& name) {
  return prefix.is_string() ? prefix.get<std::string>() != name : !prefix.empty();
}

class Reader {
 public:
  Reader(std::string_view bytes, const Json& attachments, const ImportOptions& options,
         SnippetImporter& importer)
      : bytes_(bytes), attachments_(attachments), options_(options), importer_(importer) {}

  void Read(const std::string& name, const Json& snippet) {
    if (!snippet.is_object()) throw Malformed(LineOfKey(bytes_, name), "\"" + name + "\" is not an object");
    const Json none;
    const auto member = [&](const char* key) -> const Json& {
      const auto found = snippet.find(key);
      return found == snippet.end() ? none : *found;
    };
    if (member("body").is_null()) return importer_.report().Note(Loss::NoCode, name);
    const auto body = TextOf(member("body"));
    const auto description = member("description").is_null() ? std::string() : TextOf(member("description"));
    const Json& scope = member("scope");
    if (!body || !description || !(scope.is_null() || scope.is_string())) {
      throw Malformed(LineOfKey(bytes_, name),
                      "\"" + name + "\" has a body, description or scope that is not text");
    }
    const std::string languages = scope.is_string() ? scope.get<std::string>() : std::string();
    if (!options_.allLanguages && !Trim(languages).empty() && !IsForVisualBasic(languages)) {
      return importer_.report().Note(Loss::OtherLanguage, name, 1, languages);
    }
    SnippetImporter::Foreign foreign{
        .name = name, .attachment = AttachmentOf(name), .description = *description, .code = *body};
    if (options_.templates != Templates::AsText) {
      TemplateText text = ReadTemplate(name, *body);
      if (text.placeholders > 0 && options_.templates == Templates::Skip) {
        return importer_.report().Note(Loss::Template, name);
      }
      importer_.report().Note(Loss::Placeholders, name, text.placeholders);
      foreign.code = std::move(text.text);
    }
    importer_.report().Note(Loss::OtherFields, name, OtherFieldsOf(name, snippet));
    importer_.Add(foreign);
  }

 private:
  TemplateText ReadTemplate(const std::string& name, const std::string& body) const {
    try {
      return ReadSnippetTemplate(body, options_.templates == Templates::Fields);
    } catch (const std::length_error& error) {
      throw Malformed(LineOfKey(bytes_, name), "\"" + name + "\": " + error.what());
    }
  }

  std::string AttachmentOf(const std::string& name) const {
    const auto found = attachments_.find(name);
    return found != attachments_.end() && found->is_string() ? found->get<std::string>() : std::string();
  }

  static std::size_t OtherFieldsOf(const std::string& name, const Json& snippet) {
    std::size_t count = 0;
    for (const auto& [key, value] : snippet.items()) {
      const bool known = key == "body" || key == "description" || key == "scope";
      if (!known && (key != "prefix" || SaysMoreThanTheName(value, name))) ++count;
    }
    return count;
  }

  std::string_view bytes_;
  const Json& attachments_;
  const ImportOptions& options_;
  SnippetImporter& importer_;
};

}  // namespace

Imported ReadVsCodeSnippets(std::string_view bytes, std::string_view attachments,
                            const ImportOptions& options, const CodePage& page) {
  OutermostKeys keys;
  const Json file = ReadJsonWithComments(bytes, keys);
  if (!file.is_object()) throw Malformed(1, "not a snippet file: it is not an object");
  const Json beside = attachments.empty() ? Json::object() : ReadJsonWithComments(attachments);

  SnippetImporter importer(page);
  Reader reader(bytes, beside, options, importer);
  for (const std::string& key : keys.repeated) importer.report().Note(Loss::RepeatedKey, key);
  for (const std::string& name : keys.inOrder) reader.Read(name, file[name]);
  return importer.Finish();
}

VsCodeFiles WriteVsCodeSnippets(std::span<const Snippet> snippets, bool asTemplates, const CodePage& page,
                                ConversionReport& report) {
  OrderedJson file = OrderedJson::object();
  OrderedJson attachments = OrderedJson::object();
  UniqueNames keys;
  for (const Snippet& snippet : snippets) keys.Reserve(page.ToUtf8(snippet.Name));
  for (const Snippet& snippet : snippets) {
    const std::string name = page.ToUtf8(snippet.Name);
    const std::string key = keys.Take(name, std::identity());
    if (key != name) report.Note(Loss::Renamed, name, 1, key);

    const auto [code, codeLineEndings] = ToForeignText(snippet.Code, page);
    const auto [description, descriptionLineEndings] = ToForeignText(snippet.Description, page);
    report.Note(Loss::LineEndings, name, codeLineEndings + descriptionLineEndings);
    OrderedJson entry = OrderedJson::object();
    entry["prefix"] = name;
    entry["scope"] = "vb";
    entry["body"] = LinesOf(asTemplates ? code : WriteSnippetTemplate(code));
    entry["description"] = LinesOf(description);
    // Added without a search: a search in each step would take long for large libraries.
    file.get_ref<OrderedJson::object_t&>().Container::emplace_back(key, std::move(entry));
    if (!snippet.Attachment.empty()) {
      attachments.get_ref<OrderedJson::object_t&>().Container::emplace_back(key,
                                                                            page.ToUtf8(snippet.Attachment));
    }
    ++report.carried;
  }
  constexpr int indent = 2;
  return {.snippets = file.dump(indent) + "\n",
          .attachments = attachments.empty() ? "" : attachments.dump(indent) + "\n"};
}

}  // namespace snip
