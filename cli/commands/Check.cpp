#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"
#include "library/BnsCheck.h"

namespace snip {

ExitCode Check(Session& session, const CheckOptions& options) {
  OrderedJson list = OrderedJson::array();
  std::size_t counted = 0;
  for (const std::string& path : options.libraries) {
    const FileBytes file = session.Read(path);
    for (const Problem& fault : CheckLibrary(file.view(), session.page)) {
      const bool error = fault.severity == Problem::Severity::Error;
      counted += error || options.strict ? 1 : 0;
      const char* const severity = error ? "error" : "warning";
      if (session.json) {
        list.push_back({{"library", Session::NameOf(path)},
                        {"line", fault.line},
                        {"severity", severity},
                        {"message", session.page.ToUtf8(fault.message)}});
      } else {
        session.WriteLine(Session::NameOf(path) + ":" + std::to_string(fault.line) + ": " + severity + ": " +
                          session.page.ToUtf8(fault.message));
      }
    }
  }
  if (session.json) session.WriteLine(list.dump(2));
  return counted > 0 ? ExitCode::No : ExitCode::Done;
}

}  // namespace snip
