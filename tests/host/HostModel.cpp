#include "tests/host/HostModel.h"

#include <algorithm>
#include <utility>

#include "app/IDTExtensibility.h"

namespace snip::test {
namespace {

constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kMethod = DISPATCH_METHOD;
constexpr HRESULT kOutOfRange = static_cast<HRESULT>(0x800A0009);

/// The text property of an object, by which it is known: the object itself has come from another process.
std::string TextOf(IDispatch* object, std::wstring property) {
  wchar_t* names = property.data();
  DISPID id = 0;
  DISPPARAMS none{};
  Variant text;
  object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &id);
  object->Invoke(id, IID_NULL, LOCALE_NEUTRAL, kGet, &none, text.Put(), nullptr, nullptr);
  Bstr value;
  value.Reset(text.Detach().bstrVal);
  return value.Text();
}

/// A property without arguments.
template <class Make>
ScriptObject::Member Get(const wchar_t* name, Make make) {
  return {name, kGet, {}, [make](auto&, VARIANT& result) { return Answer(result, make()); }};
}

/// What a member does that never fails and answers nothing.
template <class Act>
ScriptObject::Function Done(Act act) {
  return [act](const Arguments& arguments, VARIANT&) { return act(arguments), S_OK; };
}

}  // namespace

std::string Module::Text(LONG first, LONG end) const {
  std::string text;
  for (LONG line = first; line < end; ++line) text += lines.at(static_cast<std::size_t>(line) - 1) + "\r\n";
  return text;
}

void Module::InsertLines(LONG line, const std::string& text) {
  auto at = lines.begin() + (line - 1);
  LONG count = 0;
  for (std::size_t from = 0, end = 0; end != std::string::npos; from = end + 2, ++count) {
    end = text.find("\r\n", from);
    at = std::next(lines.insert(at, text.substr(from, end - from)));
  }
  // The cursor stays with the line that it is on.
  if (cursorLine >= line) cursorLine += count;
}

std::string Module::ProcedureOf(LONG line) const {
  for (; line > 0; --line) {
    const std::string& header = lines.at(static_cast<std::size_t>(line) - 1);
    if (header.starts_with("Sub ")) return header.substr(4, header.find('(') - 4);
  }
  return "";
}

std::shared_ptr<Module> HostModel::FindModule(const std::string& name) const {
  const auto found = std::ranges::find(modules, name, [](const auto& module) { return module->name; });
  return found == modules.end() ? nullptr : *found;
}

IDispatch* HostModel::Object(std::string name, std::vector<ScriptObject::Member> members) {
  return new ScriptObject(watch, std::move(name), std::move(members));
}

ComPtr<IDispatch> HostModel::VBE() {
  const auto window = [this] {
    return Object("Window", {Get(L"HWnd", [this] { return HandleToLong(window_); })});
  };
  std::vector<ScriptObject::Member> members{
      Get(L"CommandBars", [this] { return CommandBars(); }),
      Get(L"ActiveVBProject", [this] { return projectOpen ? Project() : nullptr; }),
      Get(L"MainWindow", window),
      Get(L"ActiveCodePane", [this] { return activeModule ? CodePane(activeModule) : nullptr; }),
      {L"ActiveCodePane", DISPATCH_PROPERTYPUTREF, {VT_DISPATCH}, Done([this](auto& arguments) {
         activeModule = FindModule(TextOf(arguments.Object(0), L"Module"));
       })}};
  if (!isVba) members.push_back(Get(L"Events", [this] { return Events(); }));
  return ComPtr<IDispatch>(Object("VBE", std::move(members)));
}

IDispatch* HostModel::Project() {
  std::vector<ScriptObject::Member> members{Get(L"Name", [] { return std::string("Project1"); }),
                                            Get(L"VBComponents", [this] { return Components(); })};
  if (isVba) {
    members.push_back(Get(L"Mode", [this] { return mode; }));
    members.push_back(Get(L"Protection", [this] { return protection; }));
  }
  return Object("VBProject", std::move(members));
}

IDispatch* HostModel::CommandBars() {
  const auto addIns = [this] {
    return Object("CommandBar", {Get(L"Controls", [this] { return Controls(); })});
  };
  const auto byName = [this, addIns](const Arguments& arguments, VARIANT& result) {
    if (!hasAddInsBar || arguments.Text(0) != "Add-Ins") return E_INVALIDARG;
    return Answer(result, addIns());
  };
  const auto byNumber = [this, addIns](const Arguments& arguments, VARIANT& result) {
    const bool known = arguments.Number(1) == 30038;
    return Answer(result, known ? Object("CommandBarPopup", {Get(L"CommandBar", addIns)}) : nullptr);
  };
  const auto menuBar = [this, byNumber] {
    return Object("MenuBar", {{L"FindControl", kMethod, {VT_ERROR, VT_I4}, byNumber}});
  };
  std::vector<ScriptObject::Member> members{{L"Item", kGet, {VT_BSTR}, byName}};
  if (isVba) members.push_back(Get(L"ActiveMenuBar", menuBar));
  return Object("CommandBars", std::move(members));
}

IDispatch* HostModel::Controls() {
  const auto item = [this](const Arguments& arguments, VARIANT& result) {
    const LONG index = arguments.Number(0);
    if (index < 1 || index > static_cast<LONG>(entries.size())) return kOutOfRange;
    return Answer(result, Control(*std::next(entries.begin(), index - 1)));
  };
  const auto add = [this](const Arguments& arguments, VARIANT& result) {
    if (arguments.Number(0) != 1) return E_INVALIDARG;
    if (isVba && arguments[4].boolVal == VARIANT_FALSE) return E_INVALIDARG;
    entries.push_back(std::make_shared<MenuEntry>());
    return Answer(result, Control(entries.back()));
  };
  // VBA's editor keeps what is not temporary.
  std::vector<VARTYPE> added{VT_I4};
  if (isVba) added.insert(added.end(), {VT_ERROR, VT_ERROR, VT_ERROR, VT_BOOL});
  return Object("CommandBarControls", {Get(L"Count", [this] { return static_cast<LONG>(entries.size()); }),
                                       {L"Item", kGet, {VT_I4}, item},
                                       {L"Add", kMethod, added, add}});
}

IDispatch* HostModel::Control(const std::shared_ptr<MenuEntry>& entry) {
  const auto remove = [this, entry](auto&, VARIANT&) { return entries.remove(entry) > 0 ? S_OK : E_FAIL; };
  auto* const control = new ScriptObject(
      watch, "CommandBarControl",
      {Get(L"Caption", [entry] { return entry->caption; }),
       {L"Caption", kPut, {VT_BSTR}, Done([entry](auto& text) { entry->caption = text.Text(0); })},
       {L"Tag", kPut, {VT_BSTR}, Done([](auto&) {})},
       {L"Delete", kMethod, {}, remove}});
  if (isVba) {
    control->source = MakeClickSource(watch, __uuidof(CommandBarButtonEvents), entry->sinks.emplace_back());
  }
  return control;
}

IDispatch* HostModel::Events() {
  const auto source = [this](const Arguments& arguments, VARIANT& result) {
    const std::string wanted = TextOf(arguments.Object(0), L"Caption");
    const auto entry = std::ranges::find(entries, wanted, [](const auto& each) { return each->caption; });
    if (entry == entries.end()) return E_INVALIDARG;
    auto& sinks = (*entry)->sinks.emplace_back();
    result.vt = VT_UNKNOWN;
    result.punkVal = MakeClickSource(watch, __uuidof(CommandBarControlEvents), sinks).Detach();
    return S_OK;
  };
  return Object("Events", {{L"CommandBarEvents", kGet, {VT_DISPATCH}, source}});
}

void HostModel::Click() {
  if (entries.empty()) return;
  const auto entry = entries.front();
  const ComPtr<IDispatch> control(Control(entry));
  std::vector<ComPtr<IDispatch>> told;  // who may come and go during it
  for (const auto& source : entry->sinks) {
    const auto sinks = source.lock();
    if (!sinks) continue;
    for (const auto& [cookie, sink] : *sinks) told.push_back(ComPtr<IDispatch>::Share(sink.get()));
  }
  for (const auto& sink : told) {
    VARIANT_BOOL flag = VARIANT_FALSE;  // "handled", which VBA's editor has not got, and "cancel"
    VARIANT arguments[3]{};
    for (VARIANT& argument : arguments) {
      argument.vt = VT_BYREF | VT_BOOL;
      argument.pboolVal = &flag;
    }
    arguments[isVba ? 1 : 2] = ByValue(control.get());
    DISPPARAMS parameters{arguments, nullptr, isVba ? 2U : 3U, 0};
    sink->Invoke(kClickEvent, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
  }
}

IDispatch* HostModel::CodePane(const std::shared_ptr<Module>& module) {
  const VARTYPE out = VT_BYREF | VT_I4;
  const auto selection = Done([module](auto& arguments) {
    const bool selects = module->selectionEnd != 0;
    *arguments[0].plVal = module->cursorLine;
    *arguments[1].plVal = module->cursorColumn;
    *arguments[2].plVal = selects ? module->selectionEnd : module->cursorLine;
    *arguments[3].plVal = selects ? 1 : module->cursorColumn;
  });
  const auto select = Done([module](auto& arguments) {
    module->cursorLine = arguments.Number(0);
    module->cursorColumn = arguments.Number(1);
  });
  const auto show = Done([this, module](auto&) {
    module->shown = true;
    if (!isVba) activeModule = module;
  });
  return Object("CodePane", {{L"GetSelection", kMethod, {out, out, out, out}, selection},
                             {L"SetSelection", kMethod, {VT_I4, VT_I4, VT_I4, VT_I4}, select},
                             Get(L"CodeModule", [this, module] { return CodeModule(module); }),
                             Get(L"Module", [module] { return module->name; }),
                             {L"Show", kMethod, {}, show}});
}

IDispatch* HostModel::CodeModule(const std::shared_ptr<Module>& module) {
  const auto insert = [this, module](const Arguments& arguments, VARIANT&) {
    if (Refuses()) return E_FAIL;
    const LONG line = arguments.Number(0);
    if (line < 1 || line > static_cast<LONG>(module->lines.size()) + 1) return kOutOfRange;
    module->InsertLines(line, arguments.Text(1));
    return S_OK;
  };
  const auto lines = [this, module](const Arguments& arguments, VARIANT& result) {
    if (protection == 1) return E_FAIL;
    const LONG first = arguments.Number(0);
    const LONG end = first + arguments.Number(1);
    if (first < 1 || end > static_cast<LONG>(module->lines.size()) + 1) return kOutOfRange;
    const std::string text = module->Text(first, end);
    return Answer(result, text.substr(0, text.rfind('\r')));
  };
  const auto erase = Done([module](auto& arguments) {
    const auto first = module->lines.begin() + arguments.Number(0) - 1;
    module->lines.erase(first, first + arguments.Number(1));
  });
  const auto procedure = [module](const Arguments& arguments, VARIANT& result) {
    *arguments[1].plVal = 0;
    return Answer(result, module->ProcedureOf(arguments.Number(0)));
  };
  const auto start = [module](const Arguments& arguments, VARIANT& result) {
    const std::string header = "Sub " + arguments.Text(0) + "(";
    const auto found = std::ranges::find_if(module->lines, [&](auto& l) { return l.starts_with(header); });
    return Answer(result, static_cast<LONG>(found - module->lines.begin()) + 1);
  };
  const auto count = [](auto&, VARIANT& result) { return Answer(result, LONG{2}); };
  return Object("CodeModule",
                {{L"InsertLines", kMethod, {VT_I4, VT_BSTR}, insert},
                 {L"Lines", kGet, {VT_I4, VT_I4}, lines},
                 Get(L"CountOfLines", [module] { return static_cast<LONG>(module->lines.size()); }),
                 {L"DeleteLines", kMethod, {VT_I4, VT_I4}, erase},
                 {L"ProcOfLine", kGet, {VT_I4, VT_BYREF | VT_I4}, procedure},
                 {L"ProcStartLine", kGet, {VT_BSTR, VT_I4}, start},
                 {L"ProcCountLines", kGet, {VT_BSTR, VT_I4}, count},
                 Get(L"Parent", [this, module] { return Component(module); }),
                 Get(L"CodePane", [this, module] { return CodePane(module); })});
}

IDispatch* HostModel::Components() {
  const auto add = [this](const Arguments& arguments, VARIANT& result) {
    if (arguments.Number(0) != 1) return E_INVALIDARG;
    if (Refuses()) return E_FAIL;
    modules.push_back(std::make_shared<Module>());
    modules.back()->name = "Module" + std::to_string(++modulesAdded_);
    return Answer(result, Component(modules.back()));
  };
  const auto remove =
      Done([this](auto& arguments) { modules.remove(FindModule(TextOf(arguments.Object(0), L"Name"))); });
  return Object("VBComponents", {{L"Add", kMethod, {VT_I4}, add},
                                 {L"Remove", kMethod, {VT_DISPATCH}, remove},
                                 Get(L"Parent", [this] { return Project(); })});
}

IDispatch* HostModel::Component(const std::shared_ptr<Module>& module) {
  const auto rename = [this, module](const Arguments& arguments, VARIANT&) {
    const std::string name = arguments.Text(0);
    if (FindModule(name)) {
      watch.description = "Name conflicts with existing module, project, or object library";
      return static_cast<HRESULT>(0x800A7D9C);
    }
    module->name = name;
    return S_OK;
  };
  return Object("VBComponent", {Get(L"Name", [module] { return module->name; }),
                                {L"Name", kPut, {VT_BSTR}, rename},
                                Get(L"Collection", [this] { return Components(); }),
                                Get(L"CodeModule", [this, module] { return CodeModule(module); })});
}

}  // namespace snip::test
