#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"
#include "library/BnsCheck.h"

namespace snip {
namespace {

class Check : public Command {
 public:
  Check(CLI::App& app, Session& session)
      : Command(app, session, "check", "report problems in libraries, with line numbers") {
    AddLibraries(libraries_);
    AddFlag("--strict", strict_, "exit with 1 for warnings as well");
    AddJson();
  }

  ExitCode Run() override {
    OrderedJson list = OrderedJson::array();
    std::size_t counted = 0;
    for (const std::string& path : libraries_) {
      InputFile file = session_.Open(path);
      for (const Problem& problem : CheckLibrary(file, session_.page)) {
        const bool error = problem.severity == Problem::Severity::Error;
        counted += error || strict_ ? 1 : 0;
        const std::string severity = error ? "error" : "warning";
        const std::string message = session_.page.ToUtf8(problem.message);
        if (session_.json) {
          list.push_back({{"library", NameOf(path)},
                          {"line", problem.line},
                          {"severity", severity},
                          {"message", message}});
        } else {
          session_.WriteLine(NameOf(path) + ":" + std::to_string(problem.line) + ": " + severity + ": " +
                             message);
        }
      }
    }
    if (session_.json) session_.WriteLine(list.dump(2));
    return counted > 0 ? ExitCode::No : ExitCode::Done;
  }

 private:
  std::vector<std::string> libraries_;
  bool strict_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeCheck(CLI::App& app, Session& session) {
  return std::make_unique<Check>(app, session);
}

}  // namespace snip
