#pragma once

#include <optional>
#include <string>
#include <vector>

#include "history/LibraryKeeper.h"

namespace snip {

/// What the notice tells, one event at a time. Its answers are about what is in memory, so an event waits
/// until its library is open. One that has nothing to be answered tells its name and does not wait, and a
/// failed save comes before all others.
class NoticeQueue {
 public:
  void Add(std::vector<LibraryEvent> events);

  /// Chooses what to tell while the library of that path is open; true when it is not what was told before.
  bool Update(const std::string& openPath);
  /// What is to be told; none when nothing is.
  const std::optional<LibraryEvent>& told() const { return told_; }
  /// The user has answered.
  void Answered() { told_.reset(); }

 private:
  std::vector<LibraryEvent> waiting_;
  std::optional<LibraryEvent> told_;
};

}  // namespace snip
