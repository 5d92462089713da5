#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "tests/host/ClickSource.h"
#include "tests/host/ScriptObject.h"

namespace snip::test {

/// An entry of the "Add-Ins" bar.
struct MenuEntry {
  std::string caption = {};
  std::vector<std::weak_ptr<Sinks>> sinks = {};
};

/// A module with its code window.
struct Module {
  std::string name;
  std::vector<std::string> lines;
  LONG cursorLine = 1;
  LONG cursorColumn = 1;
  LONG selectionEnd = 0;  ///< The line before whose first character a selection ends; 0 without one.
  bool shown = false;

  /// The lines from `first` to the one before `end`, each with its line end.
  std::string Text(LONG first, LONG end) const;
  void InsertLines(LONG line, const std::string& text);
  /// The procedure that a line belongs to; empty in the declarations.
  std::string ProcedureOf(LONG line) const;
};

/// What an environment holds, and the objects that show it to clients. Its objects keep parts of it alive, as
/// clients may keep them for longer.
class HostModel {
 public:
  explicit HostModel(HWND window) : window_(window) {}

  CallWatch watch;
  bool isVba = false;
  bool hasAddInsBar = true;  ///< By name; VBA's has its number as well.
  bool projectOpen = true;
  LONG mode = 2;        ///< Of VBA's project: 0 runs, 1 is interrupted, 2 is edited.
  LONG protection = 0;  ///< Of VBA's project: 1 is locked.
  std::list<std::shared_ptr<MenuEntry>> entries;
  std::list<std::shared_ptr<Module>> modules;
  std::shared_ptr<Module> activeModule;

  std::shared_ptr<Module> FindModule(const std::string& name) const;
  /// The root object.
  ComPtr<IDispatch> VBE();
  /// Chooses the first entry: tells those who want to know.
  void Click();

 private:
  IDispatch* Object(std::string name, std::vector<ScriptObject::Member> members);
  IDispatch* Project();
  /// Whether the project takes no changes now.
  bool Refuses() const { return mode != 2 || protection == 1; }
  IDispatch* CommandBars();
  IDispatch* Controls();
  IDispatch* Control(const std::shared_ptr<MenuEntry>& entry);
  IDispatch* Events();
  IDispatch* CodePane(const std::shared_ptr<Module>& module);
  IDispatch* CodeModule(const std::shared_ptr<Module>& module);
  IDispatch* Components();
  IDispatch* Component(const std::shared_ptr<Module>& module);

  HWND window_;
  int modulesAdded_ = 0;
};

}  // namespace snip::test
