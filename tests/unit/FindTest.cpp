#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "find/Finder.h"
#include "library/BnsFormat.h"
#include "tests/unit/Foldings.h"
#include "tests/unit/Script.h"
#include "ui/find/FoundWalk.h"
#include "ui/find/PaletteRows.h"

namespace snip::test {
namespace {

SearchedLibraryPtr MakeLibrary(const std::string& name, const std::vector<Snippet>& snippets,
                               const Folding& folding) {
  const auto library = std::make_shared<SearchedLibrary>(name, name);
  for (const Snippet& snippet : snippets) library->Add(snippet, folding);
  return library;
}

/// The palette without its windows, with one library, "L", in a code page.
class ScriptedPalette : WalkTarget {
 public:
  explicit ScriptedPalette(const std::string& page)
      : folding_(page == "Shift-JIS" ? ShiftJis()
                 : page == "UTF-8"   ? Folding::Utf8()
                                     : Latin1()) {}

  std::string operator()(const std::string& line) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::string verb = line.substr(0, blank);
    std::string rest = Trimmed(line.substr(blank));
    for (auto end = rest.find('/'); end != std::string::npos; end = rest.find('/'))
      rest.replace(end, 1, "\r\n");
    if (verb == "snippet") {
      std::vector<std::string> texts = Split(rest, '=');
      texts.resize(3);
      snippets_.push_back({texts[0], "", texts[2], texts[1]});
      rows_.finder().SetLibraries({MakeLibrary("L", snippets_, folding_)});
    }
    if (verb == "code") code_ = rest;
    if (verb == "search") rows_.Search(rest, code_);
    if (verb == "tags") rows_.ListTags();
    if (verb == "use") rows_.finder().Use(*rows_.FoundAt(std::stoi(rest)));
    if (verb == "moved") return std::to_string(rows_.RowOf({"L", rest, snippets_.size()}));
    if (verb == "step") return std::to_string(rows_.Step(std::stoi(rest), rest.ends_with('-') ? -1 : 1));
    if (verb == "answer")
      answer_ = rest == "there" ? Went::There : rest == "nowhere" ? Went::Nowhere : Went::Missing;
    if (verb == "forget" || verb == "stay") walk_.Forget();
    if (verb == "stay") walk_.BeginInCode();
    if (verb == "begin") return walk_.BeginAt(rows_.finder().found()[rest.empty() ? 0 : 1]), Told(walk_.Go());
    if (verb == "next" || verb == "back") return Told(walk_.GoOn(verb == "next"));
    return Rows();
  }

 private:
  std::string Told(std::optional<Went> went) const {
    if (went == Went::There) return snippets_[at_].Name + std::to_string(selected_.begin);
    return went ? went == Went::Nowhere ? "nowhere" : "missing" : "nothing";
  }
  static std::string Marked(std::string text, std::vector<TextRange> marks) {
    std::ranges::reverse(marks);
    for (const TextRange& mark : marks) text.insert(mark.end, "*").insert(mark.begin, "*");
    return text;
  }
  std::string Rows() const {
    std::vector<std::string> told;
    for (int row = -1; row <= rows_.count(); ++row) {
      const PaletteRow texts = rows_.Row(row);
      const auto place = rows_.PlaceAt(row);
      const bool outside = row < 0 || row == rows_.count();
      const bool isFound = rows_.FoundAt(row).has_value();
      EXPECT_EQ(place.has_value() + isFound + !rows_.TagAt(row).empty(), outside || texts.heading ? 0 : 1);
      if (outside) continue;
      EXPECT_TRUE(texts.heading || rows_.RowOf(rows_.IdentityOf(row)) == row) << row;
      told.push_back(Marked(texts.text, texts.marks) + texts.Spoken().substr(texts.text.size()) +
                     (place ? " at " + std::to_string(place->begin) : "") +
                     (texts.context.empty() ? "" : ": " + Marked(texts.context, texts.contextMarks)));
    }
    return Joined(told);
  }

  std::optional<std::string> ShownCode() override { return snippets_[at_].Code; }
  Went GoTo(const FindDestination& destination) override {
    if (answer_ == Went::There) at_ = destination.snippet;
    return answer_;
  }
  void SelectInCode(TextRange place) override { selected_ = place; }
  TextRange SelectedInCode() override { return selected_; }

  Folding folding_;
  PaletteRows rows_{folding_};
  FoundWalk walk_{*this, rows_.finder()};
  std::optional<std::string> code_;
  std::vector<Snippet> snippets_;
  std::size_t at_ = 0;
  TextRange selected_;
  Went answer_ = Went::There;
};

TEST(FindTest, ThePaletteObeysTheScripts) {
  PlayScripts<ScriptedPalette>("palette.txt");
}

TEST(FindTest, AWordIsFoundAtEveryPlaceOfTextsOfManyLengths) {
  const Folding folding = Latin1();
  // "e" and "n" can also be letters with accents, the others cannot.
  for (const auto& [word, written] :
       {std::pair{"zab", "Zab"}, {"en", "\xC9\xF1"}, {"ze", "Z\xC9"}, {"nt", "\xD1t"}}) {
    const Needle needle(word, folding);
    for (std::size_t place = 0; place < 150; ++place) {
      for (std::size_t behind = 0; behind < 80; behind += 7) {
        const std::string text = std::string(place, '\xE9') + written + std::string(behind, '.');
        ASSERT_EQ(needle.Find(text), place) << word << ' ' << behind;
        ASSERT_EQ(needle.Find(text, place + 1), std::nullopt) << word << ' ' << behind;
      }
    }
  }
}

TEST(FindTest, TheBestComesFirst) {
  const Folding folding = Latin1();
  std::vector<SearchedLibraryPtr> libraries;
  for (const std::string folder : {SNIPSTORE_STARTER_LIBRARIES, SNIPSTORE_SCRIPTS}) {
    std::set<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) files.insert(entry.path());
    for (const std::filesystem::path& path : files) {
      if (path.extension() != ".bns") continue;
      std::ifstream file(path, std::ios::binary);
      const std::string bytes(std::istreambuf_iterator<char>(file), {});
      libraries.push_back(
          MakeLibrary(path.stem().string(), std::get<BnsContents>(ReadBns(bytes)).snippets, folding));
    }
  }
  Finder finder(folding);
  finder.SetLibraries(libraries);
  std::ifstream table(SNIPSTORE_SCRIPTS "/find.txt");
  int queries = 0;
  for (std::string line; std::getline(table, line);) {
    const auto arrow = line.find(" => ");
    if (arrow == std::string::npos) continue;
    ++queries;
    std::vector<std::string> names;
    for (const Found& found : finder.Search(line.substr(0, arrow)))
      if (names.size() < 3) names.emplace_back(finder.SnippetOf(found).Name);
    EXPECT_EQ(line.substr(0, arrow) + " => " + (names.empty() ? "nothing" : Joined(names)), line);
  }
  EXPECT_GE(queries, 60);
}

TEST(FindTest, AsManyEqualNamesAsALibraryHoldsKeepTheirOrder) {
  const Folding folding = Latin1();
  Finder finder(folding);
  const std::vector<Snippet> equal(Library::kMaxSnippets, Snippet{"ReadIt", "", "code", ""});
  finder.SetLibraries({MakeLibrary("Many", equal, folding)});
  const auto& found = finder.Search("in:many readit");
  EXPECT_TRUE(found.size() == equal.size() && std::ranges::is_sorted(found, {}, &Found::snippet));
}

}  // namespace
}  // namespace snip::test
