#include "benches/GeneratedLibrary.h"

#include <array>
#include <random>
#include <string_view>

namespace snip::bench {
namespace {

constexpr int kLinesOfSnippet = 34;  // with the rest, about 2 KB

constexpr std::array<std::string_view, 12> kLines{
    "Private Sub cmdFind_Click(ByVal Index As Integer)",
    "    Dim lngCount As Long, strName As String",
    "    ' Look at every item, from the last to the first",
    "    For lngCount = lstItems.ListCount - 1 To 0 Step -1",
    "        strName = \"Item \" & CStr(lngCount) & \": \" & lstItems.List(lngCount)",
    "        If InStr(1, strName, txtFind.Text, 1) > 0 Then",
    "            lstItems.Selected(lngCount) = True",
    "        End If",
    "    Next lngCount",
    "    MsgBox \"Found in \" & Format$(Now, \"hh:mm:ss\"), vbInformation",
    "End Sub",
    "",
};

}  // namespace

std::string GeneratedCode(int lines, unsigned seed) {
  std::minstd_rand random(seed + 1);
  std::string code;
  for (int line = 0; line < lines; ++line) {
    const std::string_view text = kLines[static_cast<std::size_t>(line) % kLines.size()];
    code += text;
    // Lines of the same words but of many lengths, as in code that people write.
    if (!text.empty()) code += "  ' " + std::string(1 + random() % 24, 'x');
    if (line + 1 < lines) code += "\r\n";
  }
  return code;
}

std::vector<Snippet> GeneratedSnippets(int count) {
  std::vector<Snippet> snippets;
  snippets.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const auto seed = static_cast<unsigned>(i);
    snippets.push_back({.Name = "Find items, procedure " + std::to_string(i),
                        .Attachment = i % 10 == 0 ? "C:\\Projects\\Find\\frmFind.frm" : "",
                        .Code = GeneratedCode(kLinesOfSnippet, seed),
                        .Description = "Looks for a text in a list box.\r\nCall it from a button's click."});
  }
  return snippets;
}

}  // namespace snip::bench
