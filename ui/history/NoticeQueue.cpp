#include "ui/history/NoticeQueue.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace snip {
namespace {

using Kind = LibraryEvent::Kind;

bool IsFailedSave(const LibraryEvent& event) {
  return event.kind == Kind::SaveFailed;
}

}  // namespace

void NoticeQueue::Add(std::vector<LibraryEvent> events) {
  std::ranges::move(events, std::back_inserter(waiting_));
  std::ranges::stable_partition(waiting_, IsFailedSave);
}

bool NoticeQueue::Update(const std::string& openPath) {
  const auto concerns = [&](const LibraryEvent& event) {
    return event.kind == Kind::SaveCompleted || event.path == openPath;
  };
  const auto next = std::ranges::find_if(waiting_, concerns);
  const bool stays = told_ && concerns(*told_);
  const bool replaced = stays && !IsFailedSave(*told_) && next != waiting_.end() && IsFailedSave(*next);
  if ((stays && !replaced) || (!told_ && next == waiting_.end())) return false;
  auto before = std::exchange(told_, std::nullopt);
  if (next != waiting_.end()) {
    told_ = std::move(*next);
    waiting_.erase(next);
  }
  // A file that was changed is read as it is when its library is opened again.
  if (before && (stays || before->kind != Kind::ChangedOutside)) Add({std::move(*before)});
  return true;
}

}  // namespace snip
