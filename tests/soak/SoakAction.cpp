#include "tests/soak/SoakAction.h"

#include <array>
#include <random>

namespace snip::test {
namespace {

struct Kind {
  ActionKind kind;
  const char* name;
  unsigned weight;  ///< In thousandths, about.
};

constexpr std::array kKinds{
    Kind{ActionKind::SelectRow, "select row", 70},
    Kind{ActionKind::ClickRow, "click row", 70},
    Kind{ActionKind::ArrowKey, "arrow key", 40},
    Kind{ActionKind::EditCode, "edit code", 60},
    Kind{ActionKind::DoubleClickCode, "double click code", 20},
    Kind{ActionKind::Commit, "commit", 30},
    Kind{ActionKind::TypeCode, "type code", 110},
    Kind{ActionKind::EraseCode, "erase code", 30},
    Kind{ActionKind::CutCode, "cut code", 15},
    Kind{ActionKind::PasteCode, "paste code", 15},
    Kind{ActionKind::FocusCode, "focus code", 15},
    Kind{ActionKind::FocusDescription, "focus description", 15},
    Kind{ActionKind::TypeDescription, "type description", 70},
    Kind{ActionKind::EmptyDescription, "empty description", 10},
    Kind{ActionKind::StartRename, "start rename", 40},
    Kind{ActionKind::TypeName, "type name", 80},
    Kind{ActionKind::AcceptName, "accept name", 50},
    Kind{ActionKind::CancelName, "cancel name", 20},
    Kind{ActionKind::NewSnippet, "new snippet", 45},
    Kind{ActionKind::DeleteSnippet, "delete snippet", 25},
    Kind{ActionKind::Save, "save", 40},
    Kind{ActionKind::SwitchLibrary, "switch library", 35},
    Kind{ActionKind::NewLibrary, "new library", 8},
    Kind{ActionKind::RenameLibrary, "rename library", 15},
    Kind{ActionKind::TypeFileName, "type file name", 25},
    Kind{ActionKind::AcceptFileName, "accept file name", 15},
    Kind{ActionKind::CancelFileName, "cancel file name", 8},
    Kind{ActionKind::CopyCode, "copy code", 15},
    Kind{ActionKind::KeepOnTop, "keep on top", 8},
    Kind{ActionKind::Colouring, "colouring", 8},
    Kind{ActionKind::DragSplitter, "drag splitter", 15},
    Kind{ActionKind::ResizeWindow, "resize window", 10},
    Kind{ActionKind::Minimise, "minimise", 5},
    Kind{ActionKind::Maximise, "maximise", 5},
    Kind{ActionKind::OutputMenu, "output menu", 4},
    Kind{ActionKind::AttachmentMenu, "attachment menu", 4},
    Kind{ActionKind::SnippetsMenu, "snippets menu", 6},
    Kind{ActionKind::Restart, "restart", 7},
    Kind{ActionKind::Kill, "kill", 3},
};

unsigned TotalWeight() {
  unsigned total = 0;
  for (const Kind& kind : kKinds) total += kind.weight;
  return total;
}

ActionKind KindAt(unsigned place) {
  for (const Kind& kind : kKinds) {
    if (place < kind.weight) return kind.kind;
    place -= kind.weight;
  }
  return ActionKind::SelectRow;
}

}  // namespace

std::vector<Action> RandomActions(std::size_t count, std::uint32_t seed) {
  constexpr unsigned realOneIn = 20;
  std::mt19937 random(seed);
  const unsigned total = TotalWeight();
  std::vector<Action> actions;
  while (actions.size() < count) {
    // The distributions of the library differ between compilers; remainders do not.
    Action action{.kind = KindAt(static_cast<unsigned>(random() % total)), .real = random() % realOneIn == 0};
    action.a = static_cast<std::uint32_t>(random());
    action.b = static_cast<std::uint32_t>(random());
    const bool ends = action.kind == ActionKind::Restart || action.kind == ActionKind::Kill;
    if (!ends || actions.size() * 5 < count * 2) actions.push_back(action);
  }
  return actions;
}

std::string Describe(const Action& action) {
  std::string name;
  for (const Kind& kind : kKinds) {
    if (kind.kind == action.kind) name = kind.name;
  }
  return name + (action.real ? " (real input) " : " ") + std::to_string(action.a) + " " +
         std::to_string(action.b);
}

}  // namespace snip::test
