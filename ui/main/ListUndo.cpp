#include "ui/main/ListUndo.h"

#include <algorithm>
#include <utility>

namespace snip {

ListChange MakeChange(std::vector<Snippet>& snippets, ListChange change) {
  using Kind = ListChange::Kind;
  const auto place = snippets.begin() + change.row;
  switch (change.kind) {
    case Kind::Insert:
      snippets.insert(place, std::move(change.snippet));
      change.kind = Kind::Remove;
      break;
    case Kind::Remove:
      change.snippet = std::move(*place);
      snippets.erase(place);
      change.kind = Kind::Insert;
      break;
    case Kind::Replace:
      std::swap(*place, change.snippet);
      break;
    case Kind::Rename:
      std::swap(place->Name, change.text);
      break;
    case Kind::Attachment:
      std::swap(place->Attachment, change.text);
      break;
    case Kind::Move: {
      const auto target = snippets.begin() + change.to;
      if (target < place) {
        std::rotate(target, place, place + 1);
      } else {
        std::rotate(place, place + 1, target + 1);
      }
      std::swap(change.row, change.to);
      break;
    }
    case Kind::All:
      std::swap(snippets, change.all);
      break;
  }
  return change;
}

void ListUndo::Clear() {
  undo_.clear();
  redo_.clear();
}

void ListUndo::Made(ListChange inverse) {
  redo_.clear();
  Push(undo_, std::move(inverse));
}

std::optional<ListChange> ListUndo::Next(Steps& steps) {
  if (steps.empty()) return std::nullopt;
  ListChange change = std::move(steps.back());
  steps.pop_back();
  return change;
}

void ListUndo::Push(Steps& steps, ListChange change) {
  steps.push_back(std::move(change));
  const auto libraries = [&] { return std::ranges::count(steps, ListChange::Kind::All, &ListChange::kind); };
  while (steps.size() > kMostSteps || libraries() > static_cast<std::ptrdiff_t>(kMostLibraries))
    steps.erase(steps.begin());
}

}  // namespace snip
