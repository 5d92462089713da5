#include <algorithm>
#include <set>

#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/exchange/Json.h"

namespace snip {
namespace {

std::size_t LinesOf(std::string_view text) {
  return text.empty() ? 0 : 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

ExitCode Stats(Session& session, const StatsOptions& options) {
  OrderedJson list = OrderedJson::array();
  for (const std::string& path : options.libraries) {
    const LibraryFile library(session, path);
    std::size_t lines = 0;
    std::size_t longest = 0;
    std::size_t described = 0;
    std::size_t attached = 0;
    std::set<std::string> names;
    for (const Snippet& snippet : library.snippets) {
      lines += LinesOf(snippet.Code);
      longest = std::max(longest, LinesOf(snippet.Code));
      described += snippet.Description.empty() ? 0 : 1;
      attached += snippet.Attachment.empty() ? 0 : 1;
      names.insert(snippet.Name);
    }
    const std::size_t count = library.snippets.size();
    const OrderedJson stats = {{"library", Session::NameOf(path)},
                               {"version", library.version() == BnsVersion::Version1 ? 1 : 2},
                               {"snippets", count},
                               {"described", described},
                               {"attached", attached},
                               {"repeatedNames", count - names.size()},
                               {"codeLines", lines},
                               {"longestCode", longest}};
    if (session.json) {
      list.push_back(stats);
      continue;
    }
    for (const auto& [key, value] : stats.items()) {
      session.WriteLine(key + ": " + (value.is_string() ? value.get<std::string>() : value.dump()));
    }
  }
  if (session.json) session.WriteLine(list.dump(2));
  return ExitCode::Done;
}

}  // namespace snip
