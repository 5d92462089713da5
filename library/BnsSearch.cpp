#include "library/BnsSearch.h"

#include <algorithm>
#include <string>

namespace snip {
namespace {

/// Small enough to stay in the processor's cache between being read and being searched.
constexpr std::size_t kSearchedPiece = std::size_t{1} << 16U;

class Searcher : public BnsEvents {
 public:
  Searcher(const BnsScanner& scanner, const Matcher& matcher, const SearchedTexts& texts,
           const std::function<void(const Hit&)>& take)
      : scanner_(scanner), matcher_(matcher), texts_(texts), take_(take) {}

  void OnLine(BnsSection section, std::string_view line, std::string_view lineInFile) override {
    if (section == BnsSection::Name) {
      name_ = line;
      hit_.name = name_;
      hit_.snippet = snippets_++;
    }
    OnPlainLines(section, lineInFile);
  }

  void OnPlainLines(BnsSection section, std::string_view lines) override {
    if (hit_.section != section) firstLine_ = scanner_.lineNumber();
    hit_.section = section;
    if (!IsSearched(section)) return;
    hit_.line = scanner_.lineNumber() - firstLine_ + 1;
    std::size_t begin = 0;  // of the line that hit_.line counts
    const auto skipTo = [&](std::size_t next) {
      hit_.line += static_cast<std::size_t>(std::count(lines.data() + begin, lines.data() + next, '\n'));
      begin = next;
    };
    const std::string_view folded = matcher_.Fold(lines, folded_);
    while (const auto match = matcher_.Find(folded, begin)) {
      skipTo(match->at == 0 ? 0 : lines.rfind('\n', match->at - 1) + 1);
      const std::size_t end = std::min(lines.find('\n', begin), lines.size());
      hit_.text = lines.substr(begin, end - begin);
      if (hit_.text.ends_with('\r')) hit_.text.remove_suffix(1);
      hit_.match = {.at = match->at - begin, .length = match->length};
      if (hit_.match.at <= hit_.text.size()) take_(hit_);  // an empty match can be inside the line ending
      skipTo(std::min(end + 1, lines.size()));
    }
  }

 private:
  bool IsSearched(BnsSection section) const {
    return (section == BnsSection::Name && texts_.name) ||
           (section == BnsSection::Description && texts_.description) ||
           (section == BnsSection::Code && texts_.code);
  }

  const BnsScanner& scanner_;
  const Matcher& matcher_;
  const SearchedTexts& texts_;
  const std::function<void(const Hit&)>& take_;
  std::string name_;
  std::string folded_;
  std::size_t snippets_ = 0;
  std::size_t firstLine_ = 1;  ///< Of the section, in the file.
  Hit hit_;
};

}  // namespace

bool CanHaveHits(ByteSource& bytes, const Matcher& matcher) {
  std::string room(2 * kSearchedPiece, '\0');
  std::string folded;
  for (std::size_t kept = 0;;) {
    const std::size_t got = bytes.Read({room.data() + kept, kSearchedPiece});
    const std::string_view piece(room.data(), kept + got);
    // The line that goes on in the next piece is searched with that.
    const std::size_t end = got == 0 ? piece.size() : piece.rfind('\n') + 1;
    kept = piece.size() - end;
    if (kept > kSearchedPiece) return true;
    if (matcher.Find(matcher.Fold(piece.substr(0, end), folded), 0)) return true;
    if (got == 0) return false;
    piece.copy(room.data(), kept, end);
  }
}

void SearchLibrary(BnsScanner& scanner, const Matcher& matcher, const SearchedTexts& texts,
                   const std::function<void(const Hit&)>& take) {
  Searcher searcher(scanner, matcher, texts, take);
  scanner.Scan(searcher);
}

}  // namespace snip
