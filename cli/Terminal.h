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

  /// Whether colours may be used: on a terminal, unless NO_COLOR asks for none.
  bool coloured() const { return coloured_; }

  /// All that comes on the standard input.
  std::string ReadInput();

  /// Writes text to the standard output. On a terminal, control characters are made visible, so that what a
  /// library holds cannot command it.
  void Write(std::string_view text);
  /// Writes the program's own text and colours.
  void WriteOwn(std::string_view text) { WriteBytes(text); }
  /// Writes bytes as they are.
  void WriteBytes(std::string_view bytes);
  /// Writes what is still to be written; throws a Failure when not all of it could be.
  void Flush();

  /// A line on the standard error output, with the program's name before it.
  void Complain(std::string_view message);

 private:
  bool outputIsTerminal_ = false;
  bool errorIsTerminal_ = false;
  bool coloured_ = false;
  unsigned int previousCodePage_ = 0;  ///< Of the Windows console; 0 where there is none.
  std::string pending_;
};

}  // namespace snip
