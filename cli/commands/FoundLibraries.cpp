#include "cli/commands/FoundLibraries.h"

#include <utf8cpp/utf8.h>

#include <utility>

#include "cli/commands/LibraryFile.h"

namespace snip {

Folding FoldingOf(const CodePage& page) {
  std::array<char32_t, 256> characters{};
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const char byte = static_cast<char>(i);
    characters[i] = utf8::utf8to32(page.ToUtf8({&byte, 1})).front();
  }
  return {page, characters};
}

std::vector<SearchedLibraryPtr> ReadSearchedLibraries(Session& session, const std::vector<std::string>& paths,
                                                      const Folding& folding) {
  std::vector<SearchedLibraryPtr> libraries;
  for (const std::string& path : paths) {
    LibraryFile library(session, path);
    std::string name = session.page.FromUtf8(ToUtf8(ToPath(path).stem())).text;
    libraries.push_back(
        std::make_shared<SearchedLibrary>(std::move(name), path, std::move(library.snippets), folding));
  }
  return libraries;
}

}  // namespace snip
