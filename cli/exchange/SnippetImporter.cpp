#include "cli/exchange/SnippetImporter.h"

#include <utility>

#include "library/BnsRules.h"

namespace snip {

void SnippetImporter::Add(const Foreign& foreign) {
  std::size_t lost = 0;
  std::size_t lineEndings = 0;
  const auto text = [&](const std::string& utf8) {
    AnsiText ansi = page_.FromUtf8(utf8);
    lost += ansi.lost;
    return std::move(ansi.text);
  };
  const auto lines = [&](const std::string& utf8) {
    ConvertedLines withCrLf = WithCrLf(text(utf8));
    lineEndings += withCrLf.changed;
    return std::move(withCrLf.text);
  };
  Snippet snippet{.Name = text(foreign.name),
                  .Attachment = text(foreign.attachment),
                  .Code = lines(foreign.code),
                  .Description = lines(foreign.description)};
  report().Note(Loss::Characters, foreign.name, lost);
  report().Note(Loss::LineEndings, foreign.name, lineEndings);
  AddConverted(std::move(snippet));
}

void SnippetImporter::AddConverted(Snippet snippet) {
  const std::string name = page_.ToUtf8(snippet.Name);
  report().Note(Loss::TrailingSpaces, name, DropTrailingSpaces(snippet));
  if (const auto why = WhyNotHeld(snippet)) {
    report().Note(Loss::NotHeld, name, 1, *why);
    return;
  }
  imported_.snippets.push_back(std::move(snippet));
}

}  // namespace snip
