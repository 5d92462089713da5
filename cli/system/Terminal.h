#pragma once

#include <string>
#include <string_view>

namespace snip {

/// The standard streams. Text is UTF-8 on all systems, lines end with LF.
class Terminal {
 public:
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Whether colours may be used: on a terminal, unless NO_COLOR is set.
  bool coloured() const { return coloured_; }

  /// Writes text to the standard output. On a terminal, control characters are replaced, so that text in a
  /// library cannot control it.
  void Write(std::string_view text);
  /// Writes the program's own text and colours.
  void WriteOwn(std::string_view text) { WriteBytes(text); }
  /// Writes bytes as they are.
  void WriteBytes(std::string_view bytes);
  /// Writes what is buffered; throws a Failure if that fails.
  void Flush();

  /// A line on the standard error output, with the program's name before it.
  void Complain(std::string_view message);

 private:
  bool outputIsTerminal_ = false;
  bool errorIsTerminal_ = false;
  bool coloured_ = false;
  unsigned int previousCodePage_ = 0;  ///< Of the Windows console, or 0.
  std::string pending_;
};

}  // namespace snip
