#include <algorithm>
#include <set>

#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"

namespace snip {
namespace {

std::size_t LinesOf(std::string_view text) {
  return text.empty() ? 0 : 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

class Stats : public Command {
 public:
  Stats(CLI::App& app, Session& session) : Command(app, session, "stats", "count the contents of libraries") {
    AddLibraries(libraries_);
    AddJson();
  }

  ExitCode Run() override {
    OrderedJson list = OrderedJson::array();
    for (const std::string& path : libraries_) {
      const OrderedJson stats = StatsOf(path);
      list.push_back(stats);
      if (session_.json) continue;
      for (const auto& [key, value] : stats.items()) {
        session_.WriteLine(key + ": " + (value.is_string() ? value.get<std::string>() : value.dump()));
      }
    }
    if (session_.json) session_.WriteLine(list.dump(2));
    return ExitCode::Done;
  }

 private:
  OrderedJson StatsOf(const std::string& path) {
    const LibraryFile library(session_, path);
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
    return {{"library", NameOf(path)}, {"version", library.version() == BnsVersion::Version1 ? 1 : 2},
            {"snippets", count},       {"described", described},
            {"attached", attached},    {"repeatedNames", count - names.size()},
            {"codeLines", lines},      {"longestCode", longest}};
  }

  std::vector<std::string> libraries_;
};

}  // namespace

std::unique_ptr<Command> MakeStats(CLI::App& app, Session& session) {
  return std::make_unique<Stats>(app, session);
}

}  // namespace snip
