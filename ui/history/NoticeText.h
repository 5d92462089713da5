#pragma once

#include <string>
#include <vector>

#include "history/LibraryKeeper.h"

namespace snip {

enum class NoticeChoice { LoadAgain, TakeThem, SaveAgain, History, Close };

/// What the notice says of an event. `name` is the library's; `time` that of the event's version, as the user
/// writes times.
struct NoticeText {
  std::string line;
  std::vector<NoticeChoice> choices;  ///< At most three, as buttons from left to right.
};
NoticeText NoticeOf(LibraryEvent::Kind kind, const std::string& name, const std::string& time);

/// With "&" before the letter that chooses it.
const char* CaptionOf(NoticeChoice choice);

}  // namespace snip
