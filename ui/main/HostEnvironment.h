#pragma once

#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace snip {

// The development environment as the main window sees it. Operations throw `HostError`. While an operation
// waits for the environment, other messages of the window may be handled, including a disconnection. After
// that, objects that were returned before may still be called, but they throw instead of reaching the
// environment.

/// The environment could not do what it was asked; says why, in words for the user.
class HostError : public std::exception {
 public:
  explicit HostError(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

/// The environment is busy for longer than a user would wait.
class HostBusy : public HostError {
 public:
  using HostError::HostError;
};

/// The environment, or one of its objects, does not exist any more.
class HostGone : public HostError {
 public:
  using HostError::HostError;
};

/// Lines and columns count from 1; the end is after the last selected character. Without a selection, start
/// and end are the caret.
struct HostSelection {
  int startLine = 1;
  int startColumn = 1;
  int endLine = 1;
  int endColumn = 1;

  bool empty() const { return startLine == endLine && startColumn == endColumn; }
  friend bool operator==(const HostSelection&, const HostSelection&) = default;
};

/// A code window of the environment, with its module. Lines count from 1.
class HostCodePane {
 public:
  virtual ~HostCodePane() = default;
  virtual HostSelection Selection() = 0;
  virtual void SetCaret(int line, int column) = 0;
  /// Lines of the module, separated by CR LF.
  virtual std::string Lines(int first, int count) = 0;
  virtual int LineCount() = 0;
  virtual void DeleteLines(int first, int count) = 0;
  /// The name of the procedure that a line belongs to; empty in the declarations.
  virtual std::string ProcedureAt(int line) = 0;
  /// The lines of that procedure and of the comments before it, separated by CR LF; empty in the
  /// declarations.
  virtual std::string ProcedureCodeAt(int line) = 0;
  virtual std::string ModuleName() = 0;
  /// Inserts `text` as whole lines before a line. Its lines are separated by CR LF; the last has no line
  /// ending.
  virtual void InsertLines(int line, const std::string& text) = 0;
  virtual void Show() = 0;
};

/// A module of a project.
class HostModule {
 public:
  virtual ~HostModule() = default;
  virtual void SetName(const std::string& name) = 0;
  /// Takes it out of its project.
  virtual void Remove() = 0;
  virtual std::unique_ptr<HostCodePane> CodePane() = 0;
};

class HostEnvironment {
 public:
  virtual ~HostEnvironment() = default;
  /// Null when no code window is active.
  virtual std::unique_ptr<HostCodePane> ActiveCodePane() = 0;
  /// Adds a standard module to the active project, under a name that the environment chooses. Null when no
  /// project is open.
  virtual std::unique_ptr<HostModule> AddStandardModule() = 0;
  /// The name of the active project; empty when none is open.
  virtual std::string ProjectName() = 0;
  /// Whether a window, given by its HWND, is the environment's main window or belongs to it; false if it
  /// cannot tell. The process is not enough, because VBA's editor shares it with Office's own windows. Throws
  /// only `HostBusy`.
  virtual bool HasWindow(void* /*window*/) { return false; }
  /// To be called after a `HostGone`: false if the environment still exists, and only an object of it is
  /// gone.
  virtual bool Lost() { return true; }
};

}  // namespace snip
