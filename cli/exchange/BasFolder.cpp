#include "cli/exchange/BasFolder.h"

#include <utf8cpp/utf8.h>

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "cli/system/Failure.h"
#include "cli/exchange/Json.h"
#include "cli/exchange/UniqueNames.h"
#include "library/LineEndings.h"
#include "platform/Text.h"

namespace snip {
namespace {

constexpr std::string_view kExtension = ".bas";

std::string_view FirstLine(std::string_view text) {
  return text.substr(0, text.find(kCrLf));
}
std::string_view WithoutFirstLine(std::string_view text) {
  const auto end = text.find(kCrLf);
  return end == std::string_view::npos ? std::string_view{} : text.substr(end + kCrLf.size());
}

/// Whether a file with this code alone would be read as having a description or attributes.
bool BeginsOtherwise(std::string_view code) {
  constexpr std::array<std::string_view, 5> others = {"'", "Attribute VB_", "\xEF\xBB\xBF", "\xFF\xFE",
                                                      "\xFE\xFF"};
  return std::any_of(others.begin(), others.end(),
                     [&](std::string_view other) { return code.starts_with(other); });
}

/// The description as comments, an empty line, and the code. Without a description an empty comment comes
/// first if the code would otherwise be read as having one.
std::string BasBytes(const Snippet& snippet) {
  std::string bytes;
  if (!snippet.Description.empty() || BeginsOtherwise(snippet.Code)) {
    std::string_view rest = snippet.Description;
    do {
      const std::string_view line = FirstLine(rest);
      bytes.append(line.empty() ? "'" : "' ").append(line).append(kCrLf);
      const bool last = rest.find(kCrLf) == std::string_view::npos;
      rest = WithoutFirstLine(rest);
      if (last) break;
    } while (true);
    bytes.append(kCrLf);
  }
  return bytes.append(snippet.Code).append(kCrLf);
}

/// Splits a file again. It may also be written by hand, or saved by the development environment, which puts
/// attributes first.
void ReadBas(std::string_view text, Snippet& snippet) {
  while (text.starts_with("Attribute VB_")) text = WithoutFirstLine(text);
  std::string description;
  bool any = false;
  while (text.starts_with('\'')) {
    std::string_view line = FirstLine(text).substr(1);
    if (line.starts_with(' ')) line.remove_prefix(1);
    description.append(any ? kCrLf : "").append(line);
    any = true;
    text = WithoutFirstLine(text);
  }
  if (any && text.starts_with(kCrLf)) text.remove_prefix(kCrLf.size());
  snippet.Description = std::move(description);
  snippet.Code = text.ends_with(kCrLf) ? text.substr(0, text.size() - kCrLf.size()) : text;
}

/// LF alone ends lines only in a file without any CR LF; otherwise it is part of a line.
std::string WithUsualLines(std::string_view text, std::size_t& changed) {
  if (text.find(kCrLf) != std::string_view::npos) return std::string(text);
  ConvertedLines lines = WithCrLf(text);
  changed = lines.changed;
  return std::move(lines.text);
}

/// The name changed to one that is valid on every file system, without characters that Windows refuses and
/// without its device names.
std::string FileStem(const std::string& name) {
  std::string stem;
  for (const char32_t c : utf8::utf8to32(name)) {
    const bool refused = c < 0x20 || (c >= 0x7F && c < 0xA0) ||
                         std::u32string_view(U"\\/:*?\"<>|").find(c) != std::u32string_view::npos;
    utf8::append(refused ? U'_' : c, stem);
    constexpr std::size_t longest = 100;
    if (stem.size() >= longest) break;
  }
  while (stem.ends_with('.') || stem.ends_with(' ')) stem.back() = '_';
  static constexpr std::array<std::string_view, 4> devices = {"con", "prn", "aux", "nul"};
  const std::string_view base = std::string_view(stem).substr(0, stem.find('.'));
  const auto isBase = [&](std::string_view device) { return EqualsIgnoringAsciiCase(base, device); };
  const bool port = base.size() == 4 && (EqualsIgnoringAsciiCase(base.substr(0, 3), "com") ||
                                         EqualsIgnoringAsciiCase(base.substr(0, 3), "lpt"));
  const bool device = port || std::any_of(devices.begin(), devices.end(), isBase);
  return device || stem.empty() || stem.front() == '.' ? "_" + stem : stem;
}

std::string TextMember(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

}  // namespace

Imported ReadBasFolder(const std::vector<FolderFile>& files, Encoding encoding, const CodePage& page) {
  SnippetImporter importer(page);
  std::map<std::string, const FolderFile*> left;
  Json index = Json::array();
  for (const FolderFile& file : files) {
    if (file.name == kBasIndex) index = ReadJsonWithComments(file.bytes);
    if (file.name.size() > kExtension.size() &&
        EqualsIgnoringAsciiCase(file.name.substr(file.name.size() - kExtension.size()), kExtension)) {
      left.emplace(file.name, &file);
    }
  }
  if (!index.is_array()) throw Malformed(1, "not a list of snippets");
  const auto read = [&](const FolderFile& file, const std::string& name, const std::string& attachment) {
    std::size_t lineEndings = 0;
    AnsiText text = ReadInputText(file.bytes, encoding, page);
    AnsiText ansiName = page.FromUtf8(name);
    AnsiText ansiAttachment = page.FromUtf8(attachment);
    importer.report().Note(Loss::Characters, name, text.lost + ansiName.lost + ansiAttachment.lost);
    Snippet snippet{.Name = std::move(ansiName.text),
                    .Attachment = std::move(ansiAttachment.text),
                    .Code = {},
                    .Description = {}};
    ReadBas(WithUsualLines(text.text, lineEndings), snippet);
    importer.report().Note(Loss::LineEndings, name, lineEndings);
    importer.AddConverted(std::move(snippet));
  };
  for (const Json& entry : index) {
    if (!entry.is_object()) throw Malformed(1, "not a list of snippets");
    const auto file = left.find(TextMember(entry, "file"));
    const std::string name = TextMember(entry, "name");
    if (file == left.end()) {
      importer.report().Note(Loss::NoCode, name, 1, "its file is not there");
      continue;
    }
    read(*file->second, name, TextMember(entry, "attachment"));
    left.erase(file);
  }
  for (const auto& [name, file] : left) read(*file, name.substr(0, name.size() - kExtension.size()), "");
  return importer.Finish();
}

std::vector<FolderFile> WriteBasFolder(std::span<const Snippet> snippets, const CodePage& page,
                                       ConversionReport& report) {
  std::vector<FolderFile> files;
  OrderedJson index = OrderedJson::array();
  // Some file systems ignore case.
  const auto small = [&](const std::string& stem) { return page.Lower(page.FromUtf8(stem).text); };
  UniqueNames stems;
  for (const Snippet& snippet : snippets) stems.Reserve(small(FileStem(page.ToUtf8(snippet.Name))));
  for (const Snippet& snippet : snippets) {
    const std::string name = page.ToUtf8(snippet.Name);
    std::string file = stems.Take(FileStem(name), small).append(kExtension);
    OrderedJson entry = {{"file", file}, {"name", name}};
    if (!snippet.Attachment.empty()) entry["attachment"] = page.ToUtf8(snippet.Attachment);
    index.push_back(std::move(entry));
    files.push_back({.name = std::move(file), .bytes = BasBytes(snippet)});
    ++report.carried;
  }
  constexpr int indent = 2;
  files.push_back({.name = std::string(kBasIndex), .bytes = index.dump(indent) + "\n"});
  return files;
}

}  // namespace snip
