#include "ui/editor/EditorKeys.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace snip::test {
namespace {

/// "^" is Ctrl, "+" Shift and "%" Alt, in front of the key's code.
EditorKey Key(const std::string& held, unsigned code) {
  const auto holds = [&](char c) { return held.find(c) != std::string::npos; };
  return {.code = code, .shift = holds('+'), .control = holds('^'), .alt = holds('%')};
}

TEST(EditorKeys, APlainCodeFieldKnowsTheseKeysAlone) {
  constexpr unsigned back = 8, tab = 9, enter = 13, end = 0x23, left = 0x25, insert = 0x2D, del = 0x2E;
  constexpr auto pass = KeyAction::Pass, stop = KeyAction::Stop;
  struct Case {
    std::string held;
    std::vector<unsigned> keys;
    KeyAction unlocked, locked;
  };
  const std::vector<Case> cases = {
      {"", {'A', '1', left, end, 0x1B, 0x70}, pass, pass},
      {"", {back, del, enter}, pass, stop},
      {"", {tab}, pass, KeyAction::MoveOn},
      {"+", {tab}, pass, KeyAction::MoveOn},
      {"+", {enter}, KeyAction::NewLine, stop},
      {"^", {enter}, KeyAction::NewLine, stop},
      {"+", {insert}, KeyAction::Paste, stop},
      {"^", {'V'}, KeyAction::Paste, stop},
      {"+", {del, back}, pass, stop},
      {"^", {'X', 'Z', 'Y', back, del}, pass, stop},
      {"%", {back}, pass, stop},
      {"^", {'A', 'C', insert, left, end}, pass, pass},
      {"^+", {left, end}, pass, pass},
      {"^", {'L', 'R', 'J', 'E', '1', '2', '5', 'I', 'B', 'U', 'W', 'M', 'H', 0xBB, 0xBD, ' '}, stop, stop},
      {"^+", {'A', 'L', 'V', 'Z', 0xBB, 0xBC, 0xBE, 0xDE, ' ', 0xBD, 0x10}, stop, stop},
      {"%", {'X', 'A'}, stop, stop},
      {"^%", {'E', 'Q', 'V', '1', back}, stop, stop},
  };
  for (const Case& expected : cases) {
    for (const unsigned code : expected.keys) {
      SCOPED_TRACE(expected.held + std::to_string(code));
      EXPECT_EQ(ActionOf(Key(expected.held, code), false), expected.unlocked);
      EXPECT_EQ(ActionOf(Key(expected.held, code), true), expected.locked);
    }
  }
}

TEST(EditorKeys, CharactersOfCtrlAndLettersAreNoText) {
  for (const char c : {'a', '\xE9', ' ', '\t', '\r', '\b'})
    EXPECT_TRUE(TakesCharacter(static_cast<unsigned char>(c), {}, false));
  for (const char c : {'@', '\x80'})
    EXPECT_TRUE(TakesCharacter(static_cast<unsigned char>(c), Key("^%", 'Q'), false));
  for (const char c : {'\t', '\r', '\n', '\b', '\x17', '\x7F', '\x16'})
    EXPECT_FALSE(TakesCharacter(static_cast<unsigned char>(c), Key("^", 'I'), false));
  EXPECT_FALSE(TakesCharacter('\r', Key("+", 13), false));
  EXPECT_FALSE(TakesCharacter('a', {}, true));
  EXPECT_TRUE(TakesCharacter('\3', Key("^", 'C'), true));
  for (const bool locked : {false, true}) {  // cuts, and undoes
    EXPECT_EQ(TakesCharacter('\x18', Key("^", 'X'), locked), !locked);
    EXPECT_EQ(TakesCharacter('\x1A', Key("^", 'Z'), locked), !locked);
  }
}

}  // namespace
}  // namespace snip::test
