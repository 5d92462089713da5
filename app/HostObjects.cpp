#include "app/HostObjects.h"

namespace snip::host {
namespace {

/// An argument that the environment writes a number into.
VARIANT ByReference(LONG& number) {
  VARIANT value{};
  value.vt = VT_BYREF | VT_I4;
  value.plVal = &number;
  return value;
}

VARIANT ByValue(IDispatch* object) {
  VARIANT value{};
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return value;
}

}  // namespace

std::string CommandBarControl::Caption() const {
  return Text(L"Caption");
}
void CommandBarControl::SetCaption(const std::string& caption) const {
  Put(L"Caption", TextVariant(caption));
}
void CommandBarControl::Delete() const {
  Call(L"Delete");
}

LONG CommandBarControls::Count() const {
  return Number(L"Count");
}
CommandBarControl CommandBarControls::Item(LONG index) const {
  return CommandBarControl(Call(L"Item", {Variant(index).get()}));
}
CommandBarControl CommandBarControls::Add(LONG type) const {
  return CommandBarControl(Call(L"Add", {Variant(type).get()}));
}

CommandBarControls CommandBar::Controls() const {
  return CommandBarControls(Call(L"Controls"));
}

CommandBar CommandBars::Item(const std::string& name) const {
  return CommandBar(Call(L"Item", {TextVariant(name).get()}));
}

ComPtr<IUnknown> Events::CommandBarEvents(const CommandBarControl& control) const {
  return ObjectIn(Call(L"CommandBarEvents", {ByValue(control.get())}));
}

void CodeModule::InsertLines(LONG line, const std::string& text) const {
  Call(L"InsertLines", {Variant(line).get(), TextVariant(text).get()});
}
CodePane CodeModule::CodePane() const {
  return host::CodePane(Call(L"CodePane"));
}

CodePane::Selection CodePane::GetSelection() const {
  Selection selection;
  Call(L"GetSelection", {ByReference(selection.startLine), ByReference(selection.startColumn),
                         ByReference(selection.endLine), ByReference(selection.endColumn)});
  return selection;
}
CodeModule CodePane::CodeModule() const {
  return host::CodeModule(Call(L"CodeModule"));
}
void CodePane::Show() const {
  Call(L"Show");
}

void VBComponent::SetName(const std::string& name) const {
  Put(L"Name", TextVariant(name));
}
CodeModule VBComponent::CodeModule() const {
  return host::CodeModule(Call(L"CodeModule"));
}

VBComponent VBComponents::Add(LONG componentType) const {
  return VBComponent(Call(L"Add", {Variant(componentType).get()}));
}

VBComponents VBProject::VBComponents() const {
  return host::VBComponents(Call(L"VBComponents"));
}

HWND Window::HWnd() const {
  // Handles of windows fit into 32 bits in any process.
  return reinterpret_cast<HWND>(static_cast<LONG_PTR>(Number(L"HWnd")));
}

CommandBars VBE::CommandBars() const {
  return host::CommandBars(Call(L"CommandBars"));
}
Events VBE::Events() const {
  return host::Events(Call(L"Events"));
}
CodePane VBE::ActiveCodePane() const {
  return CodePane(Call(L"ActiveCodePane"));
}
VBProject VBE::ActiveVBProject() const {
  return VBProject(Call(L"ActiveVBProject"));
}
Window VBE::MainWindow() const {
  return Window(Call(L"MainWindow"));
}

}  // namespace snip::host
