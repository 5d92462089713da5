#pragma once

#include <string>

#include "app/LateBound.h"
#include "platform/Com.h"

/// The objects of the development environment that the program uses, with the names that they and their
/// members have there. All operations throw `HostError`; objects that the environment has not got are empty.
namespace snip::host {

class CommandBarControl : public LateBound {
 public:
  using LateBound::LateBound;
  CommandBarControl Share() const { return Shared<CommandBarControl>(); }
  std::string Caption() const;
  void SetCaption(const std::string& caption) const;
  void Delete() const;  ///< Also after the disconnection.
};

class CommandBarControls : public LateBound {
 public:
  using LateBound::LateBound;
  LONG Count() const;
  CommandBarControl Item(LONG index) const;  ///< From 1.
  CommandBarControl Add(LONG type) const;
};

class CommandBar : public LateBound {
 public:
  using LateBound::LateBound;
  CommandBarControls Controls() const;
};

class CommandBars : public LateBound {
 public:
  using LateBound::LateBound;
  CommandBar Item(const std::string& name) const;
};

class Events : public LateBound {
 public:
  using LateBound::LateBound;
  /// The source of a control's events, whose own interface need not be one for late binding.
  ComPtr<IUnknown> CommandBarEvents(const CommandBarControl& control) const;
};

class CodePane;
class VBComponent;
class VBComponents;
class VBProject;

/// A procedure with its kind, by which several of one name are told apart.
struct Procedure {
  std::string name;
  LONG kind = 0;
};

/// Lines count from 1.
class CodeModule : public LateBound {
 public:
  using LateBound::LateBound;
  void InsertLines(LONG line, const std::string& text) const;
  void DeleteLines(LONG first, LONG count) const;
  std::string Lines(LONG first, LONG count) const;
  LONG CountOfLines() const;
  Procedure ProcOfLine(LONG line) const;  ///< Without a name in the declarations.
  LONG ProcStartLine(const Procedure& procedure) const;
  LONG ProcCountLines(const Procedure& procedure) const;
  VBComponent Parent() const;
  host::CodePane CodePane() const;
};

class CodePane : public LateBound {
 public:
  using LateBound::LateBound;
  struct Selection {
    LONG startLine = 0;
    LONG startColumn = 0;
    LONG endLine = 0;
    LONG endColumn = 0;
  };
  Selection GetSelection() const;
  void SetSelection(const Selection& selection) const;
  host::CodeModule CodeModule() const;
  void Show() const;
};

class VBComponent : public LateBound {
 public:
  using LateBound::LateBound;
  std::string Name() const;
  void SetName(const std::string& name) const;
  host::CodeModule CodeModule() const;
  VBComponents Collection() const;
};

class VBComponents : public LateBound {
 public:
  using LateBound::LateBound;
  VBComponent Add(LONG componentType) const;
  void Remove(const VBComponent& component) const;
  VBProject Parent() const;
};

class VBProject : public LateBound {
 public:
  using LateBound::LateBound;
  std::string Name() const;
  LONG Mode() const;        ///< `kDesignMode` or another; VBA's alone.
  LONG Protection() const;  ///< `kLocked` or another; VBA's alone.
  host::VBComponents VBComponents() const;
};

class Window : public LateBound {
 public:
  using LateBound::LateBound;
  HWND HWnd() const;
};

/// The root.
class VBE : public LateBound {
 public:
  using LateBound::LateBound;
  VBE Share() const { return Shared<VBE>(); }
  host::CommandBars CommandBars() const;
  host::Events Events() const;
  CodePane ActiveCodePane() const;
  void SetActiveCodePane(const CodePane& pane) const;
  VBProject ActiveVBProject() const;
  Window MainWindow() const;
};

// The environment's numbers.
inline constexpr LONG kStandardModule = 1;
inline constexpr LONG kDesignMode = 2;
inline constexpr LONG kLocked = 1;

}  // namespace snip::host
