#include "ui/editor/VbTokens.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace snip::test {
namespace {

/// One letter for each column, a dot for plain text.
std::string Marked(const std::string& line, const std::vector<VbToken>& tokens) {
  std::string marks(line.size(), '.');
  for (const VbToken& token : tokens) {
    for (std::size_t i = token.begin; i < token.end; ++i) {
      marks[i] = "KSCNDPL"[static_cast<int>(token.kind)];
    }
  }
  return marks;
}

struct Case {
  std::string line;
  std::string marks;
  LineState after = LineState::Fresh;
  LineState before = LineState::Fresh;
};

TEST(VbTokens, ALineIsSplitAsVisualBasicReadsIt) {
  constexpr auto statement = LineState::InStatement;
  constexpr auto comment = LineState::InComment;
  constexpr auto directive = LineState::InDirective;
  const std::vector<Case> cases = {
      {"", ""},
      {"Dim a$, b As Long", "KKK.......KK.KKKK"},
      {"PUBLIC sub x()", "KKKKKK.KKK...."},
      {"endless = Ending", "................"},
      {"zEnd = 1", ".......N"},
      {"x = \"a \"\"b\"\" 'c\" & y ' \"d\"", "....SSSSSSSSSSSS.....CCCCC"},
      {"x = \"open 'to the end", "....SSSSSSSSSSSSSSSSS"},
      {"x = \"ends _", "....SSSSSSS"},
      {"Rem all of it", "CCCCCCCCCCCCC"},
      {"Rem", "CCC"},
      {"x = 1: Rem note", "....N..CCCCCCCC"},
      {"Remark = Remainder", ".................."},
      {"x.Rem = 1", "........N"},
      {"' goes on _", "CCCCCCCCCCC", comment},
      {"' does not_", "CCCCCCCCCCC"},
      {"Dim x ' on _ ", "KKK...CCCCCCC", comment},
      {"Dim in it \"as well", "CCCCCCCCCCCCCCCCCC", LineState::Fresh, comment},
      {"still _", "CCCCCCC", comment, comment},
      {"", "", LineState::Fresh, comment},
      {"Foo a, _", "........", statement},
      {"Bar: x", "......", LineState::Fresh, statement},
      {"_", ".", statement},
      {"x_", ".."},
      {"Done:", "LLLLL"},
      {"Done: End", "LLLLL.KKK"},
      {"10 Print x", "LL.KKKKK.."},
      {"  Else: x", "..KKKK..."},
      {"Foo x:=1", ".......N"},
      {"Foo:=1", ".....N"},
      {"10.5", "NNNN"},
      {"a.5 + b(1).5 + .5", "..N.....N..N...NN"},
      {"x = 12% + 1.5E+3! + .5 + 3# + 1E", "....NNN...NNNNNNN...NN...NN...N."},
      {"x = &HaF& + &O07 + &h0", "....NNNNN...NNNN...NNN"},
      {"x = a &Has & b", ".............."},
      {"d = #1/2/98# + #12:30 PM# + #Jan 1, 1998#", "....DDDDDDDD...DDDDDDDDDD...DDDDDDDDDDDDD"},
      {"d = #1 Jan 1998#", "....DDDDDDDDDDDD"},
      {"Print #1, \"x\": Close #2", "KKKKK..N..SSS..KKKKK..N"},
      {"Close #1, #2: Close #3", "KKKKK..N...N..KKKKK..N"},
      {"Close #1: Close #2", "KKKKK..N..KKKKK..N"},
      {"#If Win32 Then ' on", "PPP.......PPPP.CCCC"},
      {"#End If", "PPPP.PP"},
      {"#Else", "PPPPP"},
      {"  # Const a = 1", "..PPPPPPP.....N"},
      {"#If a And _", "PPP...PPP..", directive},
      {"b Then", "..PPPP", LineState::Fresh, directive},
      {"#1/2/98# = x", "DDDDDDDD...."},
      {"x.End: rs1!Next = .Print", "........................"},
      {"[End] = [Next 'a]", "................."},
      {"[End = 1", ".KKK...N"},
      {"a! = b!c: x = a&HF", ".................."},
      {"Mid$(s, 1)", "KKKK....N."},
      {"If a Then Rem b", "KK...KKKK.CCCCC"},
      {"Option Compare Text", "KKKKKK.KKKKKKK.KKKK"},
      {"Text = Output: If a Then Open f For Output", "...............KK...KKKK.KKKK...KKK.KKKKKK"},
      {"Declare Sub Beep Lib \"kernel32\" Alias \"b\"", "KKKKKKK.KKK......KKK.SSSSSSSSSS.KKKKK.SSS"},
      {"lib = alias", "..........."},
      {"Declare Sub Beep Lib _", "KKKKKKK.KKK......KKK..", statement},
      {"Open f For Binary _", "KKKK...KKK.KKKKKK..", LineState::InOpen},
      {"Access Read Write _", "KKKKKK.KKKK.KKKKK..", LineState::InOpen, LineState::InOpen},
      {"Lock Read As #1", "KKKK.KKKK.KK..N", LineState::Fresh, LineState::InOpen},
      {"Compare Text: Text = Read", "KKKKKKK.KKKK.............", LineState::Fresh, LineState::InOption},
      {"Name old As \"b\": Name = x.Name", "KKKK.....KK.SSS..............."},
      {"Name a _", "KKKK....", LineState::InName},
      {"As name", "KK.....", LineState::Fresh, LineState::InName},
      {"x = Abs(Int(y)) + Fix(z): DoEvents", "....KKK.KKK.......KKK.....KKKKKKKK"},
      {"Gr\xFC\xDF"
       "e.End = \xC4nd",
       "..............."},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.line);
    const LineTokens result = TokensOfLine(expected.line, expected.before);
    EXPECT_EQ(Marked(expected.line, result.tokens), expected.marks);
    EXPECT_EQ(result.after, expected.after);
    EXPECT_EQ(StateAfterLine(expected.line, expected.before), expected.after);
  }
}

}  // namespace
}  // namespace snip::test
