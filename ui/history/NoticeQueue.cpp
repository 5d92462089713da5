#include "ui/history/NoticeQueue.h"

#include <algorithm>
#include <utility>

namespace snip {
namespace {

using Kind = LibraryEvent::Kind;

bool IsFailedSave(const LibraryEvent& event) {
  return event.kind == Kind::SaveFailed;
}

}  // namespace

void NoticeQueue::Add(const std::vector<LibraryEvent>& events) {
  for (const LibraryEvent& event : events) {
    const auto isMadeGood = [&](const LibraryEvent& failed) {
      return IsFailedSave(failed) && failed.path == event.path;
    };
    if (event.kind == Kind::Saved) {
      std::erase_if(waiting_, isMadeGood);
      over_ = over_ || (told_ && isMadeGood(*told_));
    } else if (std::ranges::find(waiting_, event) == waiting_.end() && (over_ || told_ != event)) {
      waiting_.push_back(event);
    }
  }
  std::ranges::stable_partition(waiting_, IsFailedSave);
}

bool NoticeQueue::Update(const std::string& openPath, const std::string& savePath) {
  const auto concerns = [&](const LibraryEvent& event) {
    return event.kind == Kind::SaveCompleted || event.kind == Kind::UnsavedFound || event.path == openPath ||
           event.path == savePath;
  };
  const auto next = std::ranges::find_if(waiting_, concerns);
  const bool over = std::exchange(over_, false);
  const bool stays = told_ && !over && concerns(*told_);
  const bool replaced = stays && !IsFailedSave(*told_) && next != waiting_.end() && IsFailedSave(*next);
  if ((stays && !replaced) || (!told_ && next == waiting_.end())) return false;
  auto before = std::exchange(told_, std::nullopt);
  if (next != waiting_.end()) {
    told_ = std::move(*next);
    waiting_.erase(next);
  }
  // Opening the library again reads the changed file, so there is nothing to ask.
  if (before && !over && (stays || before->kind != Kind::ChangedOutside)) Add({std::move(*before)});
  return true;
}

}  // namespace snip
