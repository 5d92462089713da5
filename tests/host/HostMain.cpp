// Plays the development environment, in a process of its own, for tests of the add-in.
//
// Commands come as lines on the standard input, each is answered by a line on the standard output; results of
// calls are in hexadecimal. In module texts a line end is "|". See the table of commands at the end.

#include <windows.h>
#include <objbase.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <iostream>
#include <list>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/AddInIdentity.h"
#include "app/IDTExtensibility.h"
#include "platform/Com.h"
#include "platform/ComObject.h"
#include "platform/Handle.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "tests/host/HostModel.h"
#include "tests/host/HostTypeLibrary.h"
#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

constexpr UINT kCommand = WM_APP + 1;

std::string Hex(HRESULT result) {
  char text[12]{};
  std::snprintf(text, sizeof text, "%lx", static_cast<unsigned long>(result));
  return text;
}

/// Turns calls away while the environment is busy, as its dialogs do.
class BusyFilter final : public ComObject<IMessageFilter> {
 public:
  int refusals = 0;  ///< Of the calls that come next; -1 refuses all.

  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override {
    if (refusals == 0) return SERVERCALL_ISHANDLED;
    if (refusals > 0) --refusals;
    // Wine lets a call in that shall come again later.
    return SERVERCALL_REJECTED;
  }
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK, DWORD, DWORD) override { return 100; }
  DWORD STDMETHODCALLTYPE MessagePending(HTASK, DWORD, DWORD) override { return PENDINGMSG_WAITDEFPROCESS; }
};

class HostWindow : public Window {
 public:
  HostWindow() {
    Create({.className = "SnipstoreTestHost",
            .title = "Stand-in environment",
            .style = WS_OVERLAPPEDWINDOW | WS_VISIBLE,
            .place = {600, 500, 300, 150}});
  }
  ~HostWindow() override { Destroy(); }

  std::function<void(const std::string& line)> onCommand;
  /// From any thread; the line has to stay.
  void PostCommand(const std::string& line) const {
    PostMessageA(hWnd(), kCommand, 0, reinterpret_cast<LPARAM>(&line));
  }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message != kCommand) return Default(message, wParam, lParam);
    onCommand(*reinterpret_cast<const std::string*>(lParam));
    return 0;
  }
};

class Host {
 public:
  Host() {
    window_.onCommand = [this](const std::string& line) { std::cout << Run(line) << std::endl; };
    CoRegisterMessageFilter(filter_.get(), nullptr);
  }
  ~Host() { CoRegisterMessageFilter(nullptr, nullptr); }

  /// Reads commands and hands them to the thread that runs them.
  void ReadCommands() {
    for (std::string line; std::getline(std::cin, line);) window_.PostCommand(lines_.emplace_back(line));
    PostMessageA(window_.hWnd(), WM_QUIT, 0, 0);
  }

 private:
  /// What is left of a command.
  static std::string Rest(std::istringstream& words) {
    std::string rest;
    std::getline(words >> std::ws, rest);
    return rest;
  }
  static std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }

  /// Makes the object of the add-in for VBA's editor of this width, in this process. Wine's COM finds no
  /// classes of the user.
  HRESULT CreateInProcess() {
    const std::string classes = "Software\\Classes\\";
    const std::string name = kVbaLibraries[sizeof(void*) == 8 ? 1 : 0].progId;
    const std::string text = RegistryText(HKEY_CURRENT_USER, classes + name + "\\CLSID");
    library_ = LoadLibraryA(
        RegistryText(HKEY_CURRENT_USER, classes + "CLSID\\" + text + "\\InprocServer32").c_str());
    const auto getClassObject = Function<decltype(DllGetClassObject)>("DllGetClassObject");
    if (getClassObject == nullptr) return CO_E_DLLNOTFOUND;
    CLSID id{};
    CLSIDFromString(Wide(text).c_str(), &id);
    ComPtr<IClassFactory> factory;
    const HRESULT got = getClassObject(id, __uuidof(IClassFactory), factory.PutVoid());
    return FAILED(got) ? got : factory->CreateInstance(nullptr, __uuidof(IDispatch), object_.PutVoid());
  }
  template <class Type>
  Type* Function(const char* name) const {
    return reinterpret_cast<Type*>(reinterpret_cast<void*>(GetProcAddress(library_, name)));
  }

  /// Lets go of the add-in, and of its library, which has to allow that.
  std::string Release() {
    addIn_.Reset();
    object_.Reset();
    if (library_ == nullptr) return "";
    if (Function<decltype(DllCanUnloadNow)>("DllCanUnloadNow")() != S_OK) return "it is still used";
    FreeLibrary(std::exchange(library_, nullptr));
    return "";
  }

  /// Makes the add-in's object.
  HRESULT Create() {
    if (model_.isVba) return CreateInProcess();
    CLSID id{};
    CLSIDFromProgID(Wide(kAddInProgId).c_str(), &id);
    return CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, __uuidof(IUnknown), object_.PutVoid());
  }
  HRESULT ConnectAddIn(LONG mode, const ComPtr<IDispatch>& root) {
    HRESULT result = object_ ? S_OK : Create();
    if (SUCCEEDED(result))
      result = object_->QueryInterface(newer_ ? __uuidof(IDTExtensibility2) : __uuidof(IDTExtensibility),
                                       addIn_.PutVoid());
    return FAILED(result) ? result : Tell(1, mode, root);
  }
  /// Calls a function of the add-in's, the connection with no array, the others with an array that holds
  /// nothing: by its interface, by its number or, as VBA's editor does, by its name.
  HRESULT Tell(DISPID number, LONG mode = 0, const ComPtr<IDispatch>& root = {}) {
    if (!addIn_) return S_OK;  // there is nothing to tell
    SAFEARRAY* custom = number == 1 ? nullptr : SafeArrayCreateVector(VT_VARIANT, 0, 0);
    HRESULT result = S_OK;
    if (byNumber_) {
      std::vector<VARIANT> arguments(1);  // from the last to the first
      arguments[0].vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
      arguments[0].pparray = &custom;
      if (number == 1) arguments.push_back(ByValue(nullptr));
      if (number <= 2) arguments.push_back(Variant(mode).get());
      if (number == 1) arguments.push_back(ByValue(root.get()));
      const wchar_t* const names[] = {L"OnConnection", L"OnDisconnection", L"OnAddInsUpdate",
                                      L"OnStartupComplete", L"OnBeginShutdown"};
      result = Call(model_.isVba ? names[number - 1] : L"", number, arguments);
    } else {
      result = number == 1   ? addIn_->OnConnection(root.get(), mode, nullptr, &custom)
               : number == 2 ? addIn_->OnDisconnection(mode, &custom)
               : number == 3 ? addIn_->OnAddInsUpdate(&custom)
               : number == 4 ? addIn_->OnStartupComplete(&custom)
               : newer_      ? static_cast<IDTExtensibility2*>(addIn_.get())->OnBeginShutdown(&custom)
                             : S_OK;
    }
    SafeArrayDestroy(custom);
    return result;
  }
  /// Calls a member late-bound, by its name unless that is empty.
  HRESULT Call(std::wstring name, DISPID member, std::vector<VARIANT> arguments) {
    const auto addIn = addIn_.As<IDispatch>();
    wchar_t* names = name.data();
    if (!name.empty() && FAILED(addIn->GetIDsOfNames(IID_NULL, &names, 1, 0, &member)))
      return DISP_E_UNKNOWNNAME;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    return addIn->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
  }

  /// Lets a member fail, answer with no object, or do something else first: "Object.Member disconnect".
  std::string Hook(std::istringstream& words) {
    std::string member;
    std::string what;
    words >> member >> what;
    if (what == "off") {
      model_.watch.hooks.erase(member);
      model_.watch.after.clear();
      return std::exchange(model_.watch.hooked, 0) > 0 ? "hit" : "";
    }
    model_.watch.hooks[member] = [this, what, description = Rest(words)]() -> HRESULT {
      if (what == "disconnect") return Tell(2, 1);
      if (what == "nothing") return kAnswerNothing;
      if (what == "slow") return Sleep(1000), S_OK;
      if (what == "exit") ExitProcess(0);
      model_.watch.description = description;
      return static_cast<HRESULT>(std::stoul(what, nullptr, 16));
    };
    return "";
  }

  /// "NAME LINE TEXT": a module with that text, its code window active and the cursor on that line; in place
  /// of one of that name.
  std::string AddModule(std::istringstream& words) {
    auto module = std::make_shared<Module>();
    words >> module->name >> module->cursorLine;
    std::istringstream lines(Rest(words));
    for (std::string line; std::getline(lines, line, '|');) module->lines.push_back(line);
    model_.modules.remove(model_.FindModule(module->name));
    model_.modules.push_back(module);
    model_.activeModule = module;
    return "";
  }

  template <class Object>
  static std::string Names(const std::list<std::shared_ptr<Object>>& objects, std::string Object::*name) {
    std::string text;
    for (const auto& object : objects) text += "[" + (*object).*name + "]";
    return text;
  }
  std::string Text(const std::string& name) const {
    const auto module = model_.FindModule(name);
    if (!module) return "no such module";
    std::string text = module->shown ? "shown " : "";
    for (const std::string& line : module->lines) text += line + "|";
    return text;
  }

  /// "COUNT COMMAND, COMMAND...": the answers of the last time.
  std::string Repeat(std::istringstream& words) {
    int count = 0;
    words >> count;
    const std::string rest = Rest(words);
    std::string answers;
    for (int i = 0; i < count; ++i) {
      std::istringstream commands(rest);
      answers.clear();
      for (std::string command; std::getline(commands >> std::ws, command, ',');)
        answers += Run(command) + ",";
    }
    return answers;
  }

  std::string Run(const std::string& line) {
    std::istringstream words(line);
    std::string name;
    std::string word;
    words >> name;
    const auto next = [&] {
      words >> word;
      return word;
    };
    const std::map<std::string, std::function<std::string()>> commands{
        {"create", [&] { return Hex(Create()); }},
        {"connect", [&] { return Hex(ConnectAddIn(std::stol(next()), model_.VBE())); }},
        {"connectnothing", [&] { return Hex(ConnectAddIn(0, {})); }},
        {"complete", [&] { return Hex(Tell(4)); }},
        {"update", [&] { return Hex(Tell(3)); }},
        {"shutdown", [&] { return Hex(Tell(5)); }},
        {"disconnect", [&] { return Hex(Tell(2, std::stol(next()))); }},
        {"release", [&] { return Release(); }},
        {"call", [&] { return Hex(Call(Wide(next()), 0, {})); }},
        {"click", [&] { return model_.Click(), ""; }},
        {"entries", [&] { return Names(model_.entries, &MenuEntry::caption); }},
        {"entry",
         [&] {
           model_.entries.push_back(std::make_shared<MenuEntry>(MenuEntry{Rest(words)}));
           return "";
         }},
        {"nobar", [&] { return model_.hasAddInsBar = false, ""; }},
        {"noproject", [&] { return model_.projectOpen = false, ""; }},
        {"nopane", [&] { return model_.activeModule = nullptr, ""; }},
        {"module", [&] { return AddModule(words); }},
        {"select", [&] { return model_.activeModule->selectionEnd = std::stol(next()), ""; }},
        {"caret",
         [&] {
           const Module& module = *model_.activeModule;
           return std::to_string(module.cursorLine) + " " + std::to_string(module.cursorColumn);
         }},
        {"modules", [&] { return Names(model_.modules, &Module::name); }},
        {"text", [&] { return Text(next()); }},
        {"hook", [&] { return Hook(words); }},
        {"busy", [&] { return filter_->refusals = std::stoi(next()), ""; }},
        {"vba",
         [&] {
           UnregisterHostTypeLibrary();  // whose editors have none for add-ins
           return model_.isVba = newer_ = true, "";
         }},
        {"mode", [&] { return model_.mode = std::stol(next()), ""; }},
        {"protection", [&] { return model_.protection = std::stol(next()), ""; }},
        {"repeat", [&] { return Repeat(words); }},
        {"bynumber", [&] { return byNumber_ = true, ""; }},
        {"newer", [&] { return newer_ = true, ""; }},
        {"after", [&] { return model_.watch.after; }},
        {"references", [&] { return std::to_string(model_.watch.references); }},
        {"front",
         [&] {
           const HWND front = GetForegroundWindow();
           return front == window_.hWnd() ? "yes" : front == sheet_.hWnd() ? "sheet" : "no";
         }},
        {"takefront",
         [&] {
           return SetForegroundWindow((next() == "sheet" ? sheet_ : window_).hWnd()) != 0 ? "yes" : "no";
         }},
    };
    const auto command = commands.find(name);
    return command == commands.end() ? "unknown command" : command->second();
  }

  std::list<std::string> lines_;  ///< That have been read.
  HostWindow sheet_;              ///< Another window of its process, as an Office has.
  HostWindow window_;
  HostModel model_{window_.hWnd()};
  ComPtr<BusyFilter> filter_{new BusyFilter};
  ComPtr<IUnknown> object_;
  ComPtr<IDTExtensibility> addIn_;
  HMODULE library_ = nullptr;  ///< That the add-in is in.
  bool newer_ = false;         ///< Whether the environment is one that asks for IDTExtensibility2.
  bool byNumber_ = false;      ///< Whether the add-in's functions are called by their numbers.
};

}  // namespace
}  // namespace snip::test

int main() {
  using namespace snip;
  const ComApartment apartment;
  const KeptInterfaces kept{__uuidof(IDispatch)};
  try {
    test::RegisterHostTypeLibrary();
    test::Host host;
    std::thread([&host] { host.ReadCommands(); }).detach();
    std::cout << "ready" << std::endl;
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    return 0;
  } catch (const std::exception& error) {
    std::cout << error.what() << std::endl;
    return 1;
  }
}
