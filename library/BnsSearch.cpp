#include "library/BnsSearch.h"

#include <algorithm>
#include <string>

namespace snip {
namespace {

class Searcher : public BnsEvents {
 public:
  Searcher(const Matcher& matcher, const SearchedTexts& texts, const std::function<void(const Hit&)>& take)
      : matcher_(matcher), texts_(texts), take_(take) {}

  void OnLine(BnsSection section, std::string_view line, std::string_view lineInFile) override {
    if (section == BnsSection::Name) {
      name_ = line;
      hit_.name = name_;
      hit_.snippet = snippets_++;
    }
    OnPlainLines(section, lineInFile);
  }

  void OnPlainLines(BnsSection section, std::string_view lines) override {
    if (hit_.section != section) hit_.line = 1;
    hit_.section = section;
    std::size_t begin = 0;  // of the line that hit_.line counts
    const auto skipTo = [&](std::size_t next) {
      hit_.line += static_cast<std::size_t>(std::count(lines.data() + begin, lines.data() + next, '\n'));
      begin = next;
    };
    while (const auto match = IsSearched(section) ? matcher_.Find(lines, begin) : std::nullopt) {
      skipTo(match->at == 0 ? 0 : lines.rfind('\n', match->at - 1) + 1);
      const std::size_t end = std::min(lines.find('\n', begin), lines.size());
      hit_.text = lines.substr(begin, end - begin);
      if (hit_.text.ends_with('\r')) hit_.text.remove_suffix(1);
      hit_.match = {.at = match->at - begin, .length = match->length};
      if (hit_.match.at <= hit_.text.size()) take_(hit_);  // an empty match can be inside the line end
      skipTo(std::min(end + 1, lines.size()));
    }
    skipTo(lines.size());
  }

 private:
  bool IsSearched(BnsSection section) const {
    return (section == BnsSection::Name && texts_.name) ||
           (section == BnsSection::Description && texts_.description) ||
           (section == BnsSection::Code && texts_.code);
  }

  const Matcher& matcher_;
  const SearchedTexts& texts_;
  const std::function<void(const Hit&)>& take_;
  std::string name_;
  std::size_t snippets_ = 0;
  Hit hit_;
};

}  // namespace

void SearchLibrary(BnsScanner& scanner, const Matcher& matcher, const SearchedTexts& texts,
                   const std::function<void(const Hit&)>& take) {
  Searcher searcher(matcher, texts, take);
  scanner.Scan(searcher);
}

}  // namespace snip
