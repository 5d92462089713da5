#pragma once

#include <string>
#include <vector>

#include "library/Library.h"

namespace snip::bench {

/// The sizes of library that are measured: small, large, full.
inline constexpr int kLibrarySizes[] = {1000, 10000, 32767};

/// Snippets of about 2 KB in a library file, the same ones every time: names, a few lines of description, and
/// Visual Basic procedures.
std::vector<Snippet> GeneratedSnippets(int count);

/// Visual Basic of that many lines, with something to colour in most of them. Texts of different `seed`
/// differ.
std::string GeneratedCode(int lines, unsigned seed);

}  // namespace snip::bench
