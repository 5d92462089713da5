#pragma once

#include <optional>
#include <string>
#include <vector>

#include "history/LibraryKeeper.h"

namespace snip {

/// What the notice tells, one event at a time. Its answers are about what is in memory, so an event waits
/// until its library is open. Those that have nothing to be answered, or whose answer opens their library,
/// tell its name and do not wait, and a failed save comes before all others, until it is made good.
class NoticeQueue {
 public:
  void Add(const std::vector<LibraryEvent>& events);

  /// Chooses what to tell while the library of that path is open, which is saved as `savePath`, if that is
  /// another file; true when it is not what was told before.
  bool Update(const std::string& openPath, const std::string& savePath = {});
  /// What is to be told; none when nothing is.
  const std::optional<LibraryEvent>& told() const { return told_; }
  /// The user has answered.
  void Answered() { told_.reset(); }

 private:
  std::vector<LibraryEvent> waiting_;
  std::optional<LibraryEvent> told_;
  bool over_ = false;  ///< What was told is true no more.
};

}  // namespace snip
