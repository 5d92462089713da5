#pragma once

#include <string>
#include <vector>

#include "history/LibraryKeeper.h"

namespace snip {

enum class NoticeChoice { LoadAgain, TakeThem, SaveAgain, History, Close };

/// The text and buttons for an event. `name` is the library's name; `time` is that of the event's version, in
/// the user's format.
struct NoticeText {
  std::string line;
  std::vector<NoticeChoice> choices;  ///< At most three, as buttons from left to right.
};
NoticeText NoticeOf(LibraryEvent::Kind kind, const std::string& name, const std::string& time);

/// With "&" before its access key.
const char* CaptionOf(NoticeChoice choice);

}  // namespace snip
