#include "cli/exchange/Json.h"

#include <algorithm>

#include "cli/exchange/TextConversion.h"
#include "cli/system/Failure.h"

namespace snip {
namespace {

/// The end of the comment or string that begins at `at`; `at` itself if none begins there.
std::size_t SkipCommentOrString(std::string_view json, std::size_t at) {
  const std::string_view rest = json.substr(at);
  const auto behind = [&](std::string_view closer) {
    const auto end = json.find(closer, at + 2);
    return end == std::string_view::npos ? json.size() : end + closer.size();
  };
  if (rest.starts_with("//")) return behind("\n");
  if (rest.starts_with("/*")) return behind("*/");
  if (!rest.starts_with('"')) return at;
  std::size_t end = at + 1;
  while (end < json.size() && json[end] != '"') end += json[end] == '\\' ? 2 : 1;
  return std::min(end + 1, json.size());
}

/// Replaces commas between a value and a closing bracket, which the parser would refuse, with blanks. Line
/// numbers stay the same.
std::string WithoutTrailingCommas(std::string_view json) {
  std::string text(json);
  constexpr std::size_t none = std::string::npos;
  std::size_t comma = none;  // the last character but blanks and comments, if it is a comma behind a value
  char previous = '[';
  for (std::size_t i = 0; i < json.size();) {
    const char c = json[i];
    const std::size_t skipped = SkipCommentOrString(json, i);
    const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '/';
    if (!blank) {
      if ((c == '}' || c == ']') && comma != none) text[comma] = ' ';
      const bool behindValue = std::string_view("[{,:").find(previous) == std::string_view::npos;
      comma = c == ',' && behindValue ? i : none;
      previous = c;
    }
    i = std::max(i + 1, skipped);
  }
  return text;
}

}  // namespace

Json ReadJsonWithComments(std::string_view bytes) {
  OutermostKeys unused;
  return ReadJsonWithComments(bytes, unused);
}

Json ReadJsonWithComments(std::string_view bytes, OutermostKeys& keys) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  std::set<std::string> known;
  const auto watch = [&](int depth, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::key && depth == 1) {
      auto key = parsed.get<std::string>();
      if (known.insert(key).second) {
        keys.inOrder.push_back(std::move(key));
      } else {
        keys.repeated.insert(std::move(key));
      }
    }
    return true;
  };
  const std::string text = WithoutTrailingCommas(bytes);
  try {
    constexpr bool throws = true;
    constexpr bool comments = true;
    return Json::parse(text, watch, throws, comments);
  } catch (const Json::parse_error& error) {
    const auto end = std::min(error.byte > 0 ? error.byte - 1 : 0, text.size());
    const auto lineEndings = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n');
    // The message begins with the parser's name of the error and the place; the reason is at the end.
    const std::string_view message = error.what();
    const auto colon = message.find(": ");
    throw Malformed(
        static_cast<std::size_t>(lineEndings) + 1,
        "not JSON: " + std::string(colon == std::string_view::npos ? message : message.substr(colon + 2)));
  } catch (const Json::exception& error) {
    throw Malformed(1, "not JSON that can be read: " + std::string(error.what()));
  }
}

OrderedJson SnippetAsJson(const Snippet& snippet, std::size_t position, const CodePage& page) {
  return {{"position", position},
          {"name", page.ToUtf8(snippet.Name)},
          {"attachment", page.ToUtf8(snippet.Attachment)},
          {"description", ToForeignText(snippet.Description, page).text},
          {"code", ToForeignText(snippet.Code, page).text}};
}

std::size_t LineOfKey(std::string_view bytes, const std::string& key) {
  const std::string written = Json(key).dump();
  for (auto at = bytes.find(written); at != std::string_view::npos; at = bytes.find(written, at + 1)) {
    const auto next = bytes.find_first_not_of(" \t\r\n", at + written.size());
    if (next == std::string_view::npos || bytes[next] != ':') continue;
    return 1 + static_cast<std::size_t>(
                   std::count(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
  }
  return 1;
}

}  // namespace snip
