#include <cstdlib>
#include <exception>

// In place of the run-time library's function that prints the exception that nobody has caught. A program
// without a console prints nothing, and what makes exceptions' names readable would be a twentieth of it.
namespace __gnu_cxx {
void __verbose_terminate_handler();
void __verbose_terminate_handler() {
  std::abort();
}
}  // namespace __gnu_cxx
