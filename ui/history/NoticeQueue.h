#pragma once

#include <optional>
#include <string>
#include <vector>

#include "history/LibraryKeeper.h"

namespace snip {

/// Chooses the event that the notice shows, one at a time. Buttons act on the library in memory, so an event
/// waits until its library is open. Events without buttons, or with one that opens the library, name the
/// library and do not wait. A failed save comes first until a later save succeeds.
class NoticeQueue {
 public:
  void Add(const std::vector<LibraryEvent>& events);

  /// Chooses the event to show while the library `openPath` is open, which will be saved as `savePath` if
  /// that is another file. True if it is another event than before.
  bool Update(const std::string& openPath, const std::string& savePath = {});
  /// The event to show; null if there is none.
  const std::optional<LibraryEvent>& told() const { return told_; }
  /// The user has clicked a button.
  void Answered() { told_.reset(); }

 private:
  std::vector<LibraryEvent> waiting_;
  std::optional<LibraryEvent> told_;
  bool over_ = false;  ///< The shown event no longer applies.
};

}  // namespace snip
