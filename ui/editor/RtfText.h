#pragma once

#include <span>
#include <string>
#include <string_view>

#include "ui/commandbar/PropertyBag.h"
#include "ui/editor/CodeColours.h"
#include "ui/editor/ColouredText.h"

namespace snip {

/// How a text looks whose characters differ in nothing but colour.
struct RtfLook {
  FontProperty font;
  CodeColours colours;
  int tabTwips = 0;  ///< Distance of the tab stops.
};

/// Number of tab stops that a paragraph can have; the platform's limit.
constexpr int kTabStops = 32;

/// Whether a text can be written as RTF so that a rich-edit control shows it as it is: control characters
/// other than tab and CR would be lost.
bool FitsRtf(std::u16string_view text);

/// A control takes the end of the last line off a whole text, and leaves all of a part in the midst of one.
enum class RtfScope { Whole, Part };

/// A text, with a CR behind each line, as RTF. What is in no run has the fore colour; runs are in the
/// text's order.
std::string RtfOf(std::u16string_view text, std::span<const HueRun> runs, const RtfLook& look,
                  RtfScope scope = RtfScope::Whole);

}  // namespace snip
