#include "app/RegistrationRules.h"

#include <gtest/gtest.h>

#include <string>

namespace snip::test {
namespace {

TEST(RegistrationRules, WhoseRegistrationAStartTakesOverAndARemovalTakesAway) {
  using enum Registered;
  struct Case {
    Registered ownView;
    Registered otherView;
    bool enters;
    bool takenAway;
  };
  // Registered nowhere is what somebody wanted who has taken it away.
  for (const Case& c :
       {Case{None, None, false, false}, Case{Own, None, false, true}, Case{Own, Other, false, true},
        Case{Other, None, true, false}, Case{Gone, None, true, true}, Case{None, Other, true, false},
        Case{None, Gone, true, false}}) {
    SCOPED_TRACE(testing::PrintToString(static_cast<int>(c.ownView)) + " " +
                 testing::PrintToString(static_cast<int>(c.otherView)));
    EXPECT_EQ(EntersItself(c.ownView, c.otherView), c.enters);
    EXPECT_EQ(TakesAway(c.ownView), c.takenAway);
  }
}

/// The paragraphs of a text, each by a word of its own.
std::string Paragraphs(const std::string& text) {
  std::string words;
  for (const char* word : {"could not be registered", "could not be written", "for you alone", "can replace",
                           "taken out of the registry", "taken out of all lists", "in the registry could"}) {
    if (text.find(word) != std::string::npos) words += std::string(words.empty() ? "" : ", ") + word;
  }
  return words;
}

TEST(RegistrationRules, WhatIsSaidOfAnEntry) {
  using enum Entered;
  const std::pair<RegistrationFacts, const char*> cases[] = {
      {{All, All, false, false}, ""},
      {{All, All, true, false}, ""},
      {{User, All, true, false}, "for you alone"},
      {{All, User, true, false}, "for you alone"},
      {{User, User, false, false}, ""},  // as on Windows XP
      {{User, User, true, true}, "for you alone"},
      {{User, Nowhere, true, false}, "could not be written, for you alone"},
      {{Nowhere, Nowhere, false, false}, "could not be registered, could not be written"},
      {{All, All, true, true}, "can replace"},
      {{All, All, false, false, false}, "could not be written, in the registry could"},
  };
  for (const auto& [facts, said] : cases) {
    EXPECT_EQ(Paragraphs(AfterEntering(facts)), said) << AfterEntering(facts);
    EXPECT_EQ(AfterEntering(facts).empty(), std::string(said).empty());
  }
  EXPECT_EQ(AfterTakingAway(true, true), "");
  EXPECT_EQ(Paragraphs(AfterTakingAway(false, true)), "taken out of the registry");
  EXPECT_EQ(Paragraphs(AfterTakingAway(true, false)), "taken out of all lists");
}

}  // namespace
}  // namespace snip::test
