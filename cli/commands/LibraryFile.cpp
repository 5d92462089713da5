#include "cli/commands/LibraryFile.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <utility>

#include "cli/system/KeptWrite.h"
#include "library/BnsCheck.h"
#include "library/BnsRules.h"

namespace snip {
namespace {

std::string Numbers(const std::vector<std::size_t>& positions) {
  std::string text;
  for (const std::size_t position : positions) {
    text += (text.empty() ? "#" : ", #") + std::to_string(position + 1);
  }
  return text;
}

}  // namespace

void RequireRoom(const std::string& path, std::size_t count) {
  if (count > Library::kMaxSnippets) {
    throw Failure(ExitCode::Refused, NameOf(path) + ": a library can hold 32,767 snippets");
  }
}

BnsContents ReadContents(Session& session, const std::string& path, std::string_view bytes) {
  auto read = ReadBns(bytes);
  if (std::holds_alternative<NotALibrary>(read)) {
    BytesInMemory source(bytes);
    throw MalformedFile(path, Malformed(1, WhyNotALibrary(BnsScanner(source))));
  }
  BnsContents contents = std::get<BnsContents>(std::move(read));
  if (contents.omitted > 0) {
    session.terminal.Complain(NameOf(path) + ": " + std::to_string(contents.omitted) +
                              " snippets after the 32,767th are dropped");
  }
  return contents;
}

void RequireHeld(Session& session, Snippet& snippet) {
  DropTrailingSpaces(snippet);
  if (const auto why = WhyNotHeld(snippet)) {
    throw Failure(ExitCode::Refused,
                  "\"" + session.page.ToUtf8(snippet.Name) + "\" cannot be kept in a library: " + *why);
  }
}

void CheckNothingIsLost(Session& session, const std::string& path, std::string_view bytes) {
  for (const Problem& problem : CheckLibrary(bytes, session.page)) {
    if (!problem.lostOnSave) continue;
    const std::string message =
        MalformedFile(path, Malformed(problem.line, session.page.ToUtf8(problem.message))).what();
    if (!session.lossy)
      throw Failure(ExitCode::Refused, message + "; --lossy writes the library without that");
    session.terminal.Complain(message);
  }
}

BnsContents ReadForChange(Session& session, const std::string& path, std::string_view bytes) {
  BnsContents contents = ReadContents(session, path, bytes);
  if (contents.version == BnsVersion::Version1) {
    throw Failure(ExitCode::Refused,
                  NameOf(path) + ":1: the library is version 1; \"bns convert\" makes it version 2");
  }
  CheckNothingIsLost(session, path, bytes);
  return contents;
}

LibraryFile::LibraryFile(Session& session, const std::string& path)
    : LibraryFile(session, path, ReadContents(session, path, session.Read(path))) {}

LibraryFile::LibraryFile(Session& session, const std::string& path, BnsContents&& contents)
    : snippets(std::move(contents.snippets)), session_(session), path_(path), version_(contents.version) {}

LibraryFile LibraryFile::ForChange(Session& session, const std::string& path, bool create) {
  std::error_code ignored;
  const bool isNew = create && path != "-" && !std::filesystem::exists(ToPath(path), ignored);
  LibraryFile library(session, path,
                      isNew ? BnsContents{} : ReadForChange(session, path, session.Read(path)));
  library.isNew_ = isNew;
  return library;
}

std::size_t LibraryFile::Find(const std::string& which) const {
  const AnsiText wanted = session_.page.FromUtf8(which);
  const std::string small = session_.page.Lower(wanted.text);
  std::vector<std::size_t> same;
  std::vector<std::size_t> inAnotherCase;
  for (std::size_t i = 0; wanted.lost == 0 && i < snippets.size(); ++i) {
    if (snippets[i].Name == wanted.text) same.push_back(i);
    if (session_.page.Lower(snippets[i].Name) == small) inAnotherCase.push_back(i);
  }
  const std::vector<std::size_t>& found = same.empty() ? inAnotherCase : same;
  if (found.size() == 1) return found.front();
  if (found.size() > 1) {
    throw Failure(ExitCode::No,
                  "several snippets have the name \"" + which + "\"; choose one of " + Numbers(found));
  }
  std::size_t number = 0;
  const char* const end = which.data() + which.size();
  if (which.starts_with('#') && std::from_chars(which.data() + 1, end, number).ptr == end && number >= 1 &&
      number <= snippets.size()) {
    return number - 1;
  }
  throw Failure(ExitCode::No, NameOf(path_) + ": there is no snippet \"" + which + "\"");
}

void LibraryFile::CheckRoom(std::size_t more) const {
  RequireRoom(path_, snippets.size() + more);
}

void WriteLibrary(Session& session, const std::string& path, const std::vector<Snippet>& snippets,
                  bool isNew) {
  RequireRoom(path, snippets.size());
  const std::string bytes = WriteBns(snippets);
  // The last check: the file must read back as the snippets.
  const auto read = ReadBns(bytes);
  const auto* contents = std::get_if<BnsContents>(&read);
  if (contents == nullptr || contents->snippets != snippets || contents->omitted > 0) {
    throw Failure(ExitCode::Refused, NameOf(path) + ": the library would not read back unchanged");
  }
  if (path == "-") {
    session.terminal.WriteBytes(bytes);
  } else {
    WriteLibraryFile(path, bytes, isNew ? Existing::Keep : Existing::Replace);
  }
}

}  // namespace snip
