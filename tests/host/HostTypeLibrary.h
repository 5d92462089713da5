#pragma once

#include <string>

namespace snip::test {

/// Makes a type library with the environment's interface for add-ins in a file, if it is not there, and
/// registers it, as an environment does when it starts: calls between processes are passed on by it. For test
/// prefixes only: on a machine with a real environment it would take the place of the environment's own.
void RegisterHostTypeLibrary(const std::string& path);
void UnregisterHostTypeLibrary();

}  // namespace snip::test
