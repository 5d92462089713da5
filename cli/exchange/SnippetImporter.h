#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/exchange/ConversionReport.h"
#include "cli/system/CodePage.h"
#include "cli/exchange/TextConversion.h"
#include "library/Library.h"

namespace snip {

/// How an import treats the placeholders of a snippet.
enum class Templates {
  Fields,  ///< Placeholders become fields of the code, or their default texts if no field can represent them.
  Skip,    ///< The snippet is left out.
  Fill,    ///< Each placeholder becomes its default text.
  AsText,  ///< The code is the template's text, with placeholders and escapes unchanged.
};

struct ImportOptions {
  Templates templates = Templates::Fields;
  bool allLanguages = false;  ///< Also snippets that say they are not Visual Basic.
};

/// Snippets of another tool's file, and a report of what could not be imported.
struct Imported {
  std::vector<Snippet> snippets;
  ConversionReport report;
};

/// Makes snippets of a library from those of another tool, whose texts are UTF-8.
class SnippetImporter {
 public:
  explicit SnippetImporter(const CodePage& page) : page_(page) {}

  struct Foreign {
    std::string name;
    std::string attachment;
    std::string description;
    std::string code;
  };
  /// Converts the texts and adds the snippet, or skips it if a library cannot hold it.
  void Add(const Foreign& foreign);
  /// Adds a snippet whose texts are in the library's code page, with CR LF as line endings.
  void AddConverted(Snippet snippet);

  ConversionReport& report() { return imported_.report; }
  const CodePage& page() const { return page_; }
  Imported Finish() { return std::move(imported_); }

 private:
  const CodePage& page_;
  Imported imported_;
};

}  // namespace snip
