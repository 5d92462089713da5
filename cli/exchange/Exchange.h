#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/exchange/Outcome.h"
#include "cli/text/CodePage.h"
#include "cli/text/InputText.h"
#include "library/Library.h"

namespace snip {

/// What becomes of a snippet with placeholders on its way into a library, where code is only code.
enum class Templates {
  LeaveOut,
  Fill,    ///< Each placeholder becomes its default text.
  AsText,  ///< The template's text, placeholders and escapes as they are written, is the code.
};

struct ImportOptions {
  Templates templates = Templates::LeaveOut;
  bool allLanguages = false;  ///< Also snippets that say they are not Visual Basic.
};

/// Snippets read from another tool's file, and what of them could not be had.
struct Imported {
  std::vector<Snippet> snippets;
  Outcome outcome;
};

/// Takes in snippets of another tool, whose texts are UTF-8, as snippets of a library.
class Intake {
 public:
  explicit Intake(const CodePage& page) : page_(page) {}

  struct Foreign {
    std::string name;
    std::string attachment;
    std::string description;
    std::string code;
  };
  /// Converts the texts and adds the snippet, or leaves it out when a library cannot hold it.
  void Add(const Foreign& foreign);
  /// Adds a snippet whose texts are in the library's code page; its line ends are CR LF where they are ends.
  void AddConverted(Snippet snippet);

  Outcome& outcome() { return imported_.outcome; }
  const CodePage& page() const { return page_; }
  Imported Finish() { return std::move(imported_); }

 private:
  const CodePage& page_;
  Imported imported_;
};

/// A text of a library on its way into a format of UTF-8 text, with LF for every line end; counts the line
/// ends that were of another kind than CR LF.
std::string ToForeignText(std::string_view ansi, const CodePage& page, std::size_t& otherLineEnds);

}  // namespace snip
