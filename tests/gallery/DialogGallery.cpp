// Shows one of the program's dialogs, for people to look at.
//
//   dialog_gallery [about | new]

#include <string>

#include "library/frmNew.h"
#include "platform/Win32Text.h"
#include "ui/dialogs/frmAbout.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  using namespace snip;
  const std::vector<std::string> arguments = CommandLineArguments();
  const std::string name = arguments.empty() ? "about" : arguments.front();
  const auto showMessage = [](const std::string& prompt, int, const std::string& title) {
    MessageBoxA(GetActiveWindow(), prompt.c_str(), title.c_str(), MB_OK);
    return MessageResult::Ok;
  };
  if (name == "new") {
    frmNew().ShowMe(nullptr, "Strings");
  } else {
    frmAbout(showMessage).ShowMe(nullptr);
  }
  return 0;
}
