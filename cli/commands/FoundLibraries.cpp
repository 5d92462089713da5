#include "cli/commands/FoundLibraries.h"

#include <utf8cpp/utf8.h>

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
    const std::string name = session.page.FromUtf8(ToUtf8(ToPath(path).stem())).text;
    const LibraryFile file(session, path);
    const auto library = std::make_shared<SearchedLibrary>(name, path);
    for (const Snippet& snippet : file.snippets) library->Add(snippet, folding);
    libraries.push_back(library);
  }
  return libraries;
}

}  // namespace snip
