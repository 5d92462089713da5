// A screen reader in a process of its own, for tests.
//
//   accessible_client WINDOW           lists the children of a window's client area, one a line
//   accessible_client WINDOW NAME      presses the child of that name
//
// WINDOW is the handle in hexadecimal. Ends with 0 when it could do so.

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "platform/Com.h"
#include "tests/support/AccessibleClient.h"

int main(int count, char** arguments) {
  using namespace snip;
  if (count < 2) return 2;
  const ComApartment apartment;
  try {
    const auto window = reinterpret_cast<HWND>(std::strtoull(arguments[1], nullptr, 16));
    const test::AccessibleClient client(window);
    if (count > 2) return client.Press(arguments[2]) ? 0 : 1;
    for (const test::AccessibleChild& child : client.Children()) {
      std::printf("%ld|%s|role %ld|state %lx|%s|%s|%d,%d %dx%d\n", child.id, child.name.c_str(), child.role,
                  static_cast<unsigned long>(child.state), child.shortcut.c_str(),
                  child.defaultAction.c_str(), child.place.left, child.place.top, child.place.width,
                  child.place.height);
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
