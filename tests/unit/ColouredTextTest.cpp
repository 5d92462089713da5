#include "ui/editor/ColouredText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace snip::test {
namespace {

/// A field that shows a text in colours, and is coloured by what the text under test says.
struct Field {
  ColouredText model;
  std::string text;
  std::string hues;  ///< One letter a character.

  void Load(const std::string& newText) {
    text = newText;
    hues.assign(text.size(), 'f');
    model.Load(text);
  }
  void Edit(std::size_t begin, std::size_t end, const std::string& inserted, Hue hue) {
    text.replace(begin, end - begin, inserted);
    hues.replace(begin, end - begin, std::string(inserted.size(), Letter(hue)));
  }
  static char Letter(Hue hue) { return "fkcs?"[static_cast<int>(hue)]; }
  std::size_t Finish(std::size_t first, std::size_t end) {
    const std::vector<HueRun> runs = model.Finish(first, end);
    std::size_t place = 0;
    for (const HueRun& run : runs) {
      EXPECT_LE(place, run.begin);
      EXPECT_LT(run.begin, run.end);
      place = run.end;
      hues.replace(run.begin, run.end - run.begin, std::string(run.end - run.begin, Letter(run.hue)));
    }
    EXPECT_LE(place, text.size());
    return runs.size();
  }
  /// The colours, a blank's being nobody's business.
  std::string Seen() const {
    std::string seen = hues;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == ' ' || text[i] == '\r') seen[i] = text[i];
    }
    return seen;
  }
};

std::string ColoursFromScratch(const std::string& text) {
  Field field;
  field.Load(text);
  field.Finish(0, field.model.lineCount());
  return field.Seen();
}

TEST(ColouredText, TheWholeTextIsColouredInFewRuns) {
  Field field;
  field.Load("End  Sub\r\rPrivate Sub a()\r  s = \"x\" ' n _\rDim");
  EXPECT_EQ(field.Finish(0, 9), 3U);
  EXPECT_EQ(field.Seen(), "kkk  kkk\r\rkkkkkkk kkk fff\r  f f sss c c c\rccc");
  EXPECT_TRUE(field.model.finished());
  field.model.SetColouring(false);
  field.Finish(0, 9);
  EXPECT_EQ(field.Seen(), "fff  fff\r\rfffffff fff fff\r  f f fff f f f\rfff");
}

TEST(ColouredText, OnlyWhatAChangeConcernsIsColouredAnew) {
  struct Case {
    std::string name;
    std::size_t begin, end;
    std::string inserted;
    Hue hue;
    std::size_t firstLine, linesToFinish, runs;
  };
  const std::vector<Case> cases = {
      {"a letter of a name, in its colour", 5, 5, "y", Hue::Fore, 0, 1, 0},
      {"a letter that ends a keyword", 3, 3, "m", Hue::Keyword, 0, 1, 1},
      {"an apostrophe", 0, 0, "'", Hue::Keyword, 0, 1, 1},
      {"a comment that goes on", 0, 0, "' _\r", Hue::Fore, 0, 2, 1},
      {"a line less", 5, 6, "", Hue::Fore, 0, 1, 1},
  };
  for (const Case& change : cases) {
    SCOPED_TRACE(change.name);
    Field field;
    field.Load("Dim x\rDim y\rDim z");
    field.Finish(0, 3);
    field.Edit(change.begin, change.end, change.inserted, change.hue);
    EXPECT_EQ(field.model.Replace(change.begin, change.end, change.inserted, change.hue),
              change.firstLine + change.linesToFinish);
    EXPECT_EQ(field.model.NextUnfinished(0), change.firstLine);
    EXPECT_EQ(field.model.NextUnfinished(change.firstLine + change.linesToFinish), field.model.lineCount());
    EXPECT_EQ(field.Finish(0, change.linesToFinish), change.runs);
    EXPECT_TRUE(field.model.finished());
    EXPECT_EQ(field.Seen(), ColoursFromScratch(field.text));
  }
}

}  // namespace
}  // namespace snip::test
