#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "cli/commands/Session.h"
#include "cli/exchange/Exchange.h"
#include "library/BnsSearch.h"

// The commands of `bns`, each in a file of its own. All texts are as the command line gives them, in UTF-8;
// paths may be "-" for the standard streams. A command throws a Failure for what ends it.
namespace snip {

struct ListOptions {
  std::string library;
  bool details = false;
};
ExitCode List(Session& session, const ListOptions& options);

struct ShowOptions {
  enum class What { All, Code, Description, Attachment };
  std::string library;
  std::string snippet;
  What what = What::All;
  bool raw = false;  ///< The bytes as the library has them.
};
ExitCode Show(Session& session, const ShowOptions& options);

struct SearchOptions {
  std::string pattern;
  std::vector<std::string> libraries;
  bool ignoreCase = false;
  bool wholeWord = false;
  bool regularExpression = false;
  bool namesOnly = false;
  bool countOnly = false;
  std::vector<std::string> in;  ///< "name", "description", "code"; all when empty.
};
ExitCode Search(Session& session, const SearchOptions& options);

/// The texts of a snippet that `add` and `edit` are given; those that are not keep what they are.
struct SnippetTexts {
  std::optional<std::string> code;  ///< From here to the attachment: the texts themselves,
  std::optional<std::string> description;
  std::optional<std::string> attachment;
  std::optional<std::string> codeFile;  ///< or the files that hold them.
  std::optional<std::string> descriptionFile;
  Encoding encoding = Encoding::Auto;
};

struct AddOptions {
  std::string library;
  std::string name;
  SnippetTexts texts;
  bool create = false;    ///< Makes a library where there is none.
  bool sameName = false;  ///< Adds it though there is one of that name.
};
ExitCode Add(Session& session, const AddOptions& options);

struct EditOptions {
  std::string library;
  std::string snippet;
  SnippetTexts texts;
};
ExitCode Edit(Session& session, const EditOptions& options);

struct RemoveOptions {
  std::string library;
  std::vector<std::string> snippets;
};
ExitCode Remove(Session& session, const RemoveOptions& options);

struct RenameOptions {
  std::string library;
  std::string snippet;
  std::string name;
  bool sameName = false;
};
ExitCode Rename(Session& session, const RenameOptions& options);

struct MoveOptions {
  std::string library;
  std::string snippet;
  // One of these:
  std::optional<std::size_t> position;  ///< From 1.
  std::optional<std::string> before;
  std::optional<std::string> after;
  std::optional<std::string> into;  ///< Another library, at whose end it goes.
};
ExitCode Move(Session& session, const MoveOptions& options);

/// What becomes of a snippet whose name the library has, with other texts.
enum class SameName { Skip, Number };

struct MergeOptions {
  std::string library;
  std::vector<std::string> sources;
  SameName sameName = SameName::Skip;
  bool dryRun = false;
  bool create = false;
};
ExitCode Merge(Session& session, const MergeOptions& options);

struct CheckOptions {
  std::vector<std::string> libraries;
  bool strict = false;  ///< Warnings count as well.
};
ExitCode Check(Session& session, const CheckOptions& options);

struct ConvertOptions {
  std::string library;
  std::string output;  ///< Empty for the library itself.
};
ExitCode Convert(Session& session, const ConvertOptions& options);

enum class Format { ByName, VisualStudio, VsCode, Bas };

struct ExportOptions {
  std::string library;
  std::string output;
  Format format = Format::ByName;
  std::vector<std::string> snippets;  ///< All when empty.
  bool asTemplates = false;
  bool force = false;  ///< Overwrites a file.
  bool dryRun = false;
};
ExitCode Export(Session& session, const ExportOptions& options);

struct ImportCommandOptions {
  std::string library;
  std::vector<std::string> sources;
  Format format = Format::ByName;
  ImportOptions reading;
  Encoding encoding = Encoding::AnsiUnlessMarked;  ///< Of `.bas` files.
  SameName sameName = SameName::Skip;
  bool dryRun = false;
  bool create = false;
};
ExitCode Import(Session& session, const ImportCommandOptions& options);

struct StatsOptions {
  std::vector<std::string> libraries;
};
ExitCode Stats(Session& session, const StatsOptions& options);

}  // namespace snip
