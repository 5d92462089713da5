#include "cli/exchange/Exchange.h"

#include <utility>

#include "library/BnsRules.h"

namespace snip {

void Intake::Add(const Foreign& foreign) {
  std::size_t lost = 0;
  std::size_t lineEnds = 0;
  const auto text = [&](const std::string& utf8) {
    AnsiText ansi = page_.FromUtf8(utf8);
    lost += ansi.lost;
    return std::move(ansi.text);
  };
  const auto lines = [&](const std::string& utf8) {
    CrLfText withCrLf = WithCrLf(text(utf8));
    lineEnds += withCrLf.changed;
    return std::move(withCrLf.text);
  };
  Snippet snippet{.Name = text(foreign.name),
                  .Attachment = text(foreign.attachment),
                  .Code = lines(foreign.code),
                  .Description = lines(foreign.description)};
  outcome().Note(Loss::Characters, foreign.name, lost);
  outcome().Note(Loss::LineEnds, foreign.name, lineEnds);
  AddConverted(std::move(snippet));
}

void Intake::AddConverted(Snippet snippet) {
  const std::string name = page_.ToUtf8(snippet.Name);
  outcome().Note(Loss::LineEndBlanks, name, DropLineEndSpaces(snippet));
  if (const auto why = WhyNotHeld(snippet)) {
    outcome().Note(Loss::NotHeld, name, 1, *why);
    return;
  }
  imported_.snippets.push_back(std::move(snippet));
}

std::string ToForeignText(std::string_view ansi, const CodePage& page, std::size_t& otherLineEnds) {
  std::string lines;
  while (!ansi.empty()) {
    const auto end = ansi.find_first_of("\r\n");
    lines.append(ansi.substr(0, end));
    if (end == std::string_view::npos) break;
    const bool usual = ansi.substr(end).starts_with("\r\n");
    otherLineEnds += usual ? 0 : 1;
    lines += '\n';
    ansi.remove_prefix(end + (usual ? 2 : 1));
  }
  return page.ToUtf8(lines);
}

}  // namespace snip
