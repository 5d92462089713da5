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

}  // namespace

std::string CommandBarControl::Caption() const {
  return Text(L"Caption");
}
void CommandBarControl::SetCaption(const std::string& caption) const {
  Put(L"Caption", TextVariant(caption));
}
void CommandBarControl::Delete() const {
  CallAtTheEnd(L"Delete");
}

LONG CommandBarControls::Count() const {
  return Number(L"Count");
}
CommandBarControl CommandBarControls::Item(LONG index) const {
  return Get<host::CommandBarControl>(L"Item", {Variant(index).get()});
}
CommandBarControl CommandBarControls::Add(LONG type) const {
  return Get<host::CommandBarControl>(L"Add", {Variant(type).get()});
}

CommandBarControls CommandBar::Controls() const {
  return Get<host::CommandBarControls>(L"Controls");
}

CommandBar CommandBars::Item(const std::string& name) const {
  return Get<host::CommandBar>(L"Item", {TextVariant(name).get()});
}

ComPtr<IUnknown> Events::CommandBarEvents(const CommandBarControl& control) const {
  return ObjectIn(Call(L"CommandBarEvents", {ByValue(control.get())}).get());
}

void CodeModule::InsertLines(LONG line, const std::string& text) const {
  Call(L"InsertLines", {Variant(line).get(), TextVariant(text).get()});
}
void CodeModule::DeleteLines(LONG first, LONG count) const {
  Call(L"DeleteLines", {Variant(first).get(), Variant(count).get()});
}
std::string CodeModule::Lines(LONG first, LONG count) const {
  return Text(L"Lines", {Variant(first).get(), Variant(count).get()});
}
LONG CodeModule::CountOfLines() const {
  return Number(L"CountOfLines");
}
Procedure CodeModule::ProcOfLine(LONG line) const {
  Procedure procedure;
  procedure.name = Text(L"ProcOfLine", {Variant(line).get(), ByReference(procedure.kind)});
  return procedure;
}
LONG CodeModule::ProcStartLine(const Procedure& procedure) const {
  return Number(L"ProcStartLine", {TextVariant(procedure.name).get(), Variant(procedure.kind).get()});
}
LONG CodeModule::ProcCountLines(const Procedure& procedure) const {
  return Number(L"ProcCountLines", {TextVariant(procedure.name).get(), Variant(procedure.kind).get()});
}
VBComponent CodeModule::Parent() const {
  return Get<host::VBComponent>(L"Parent");
}
CodePane CodeModule::CodePane() const {
  return Get<host::CodePane>(L"CodePane");
}

CodePane::Selection CodePane::GetSelection() const {
  Selection selection;
  Call(L"GetSelection", {ByReference(selection.startLine), ByReference(selection.startColumn),
                         ByReference(selection.endLine), ByReference(selection.endColumn)});
  return selection;
}
void CodePane::SetSelection(const Selection& selection) const {
  Call(L"SetSelection", {Variant(selection.startLine).get(), Variant(selection.startColumn).get(),
                         Variant(selection.endLine).get(), Variant(selection.endColumn).get()});
}
CodeModule CodePane::CodeModule() const {
  return Get<host::CodeModule>(L"CodeModule");
}
void CodePane::Show() const {
  Call(L"Show");
}

std::string VBComponent::Name() const {
  return Text(L"Name");
}
void VBComponent::SetName(const std::string& name) const {
  Put(L"Name", TextVariant(name));
}
CodeModule VBComponent::CodeModule() const {
  return Get<host::CodeModule>(L"CodeModule");
}

VBComponents VBComponent::Collection() const {
  return Get<host::VBComponents>(L"Collection");
}

VBComponent VBComponents::Add(LONG componentType) const {
  return Get<host::VBComponent>(L"Add", {Variant(componentType).get()});
}
void VBComponents::Remove(const VBComponent& component) const {
  Call(L"Remove", {ByValue(component.get())});
}
VBProject VBComponents::Parent() const {
  return Get<host::VBProject>(L"Parent");
}

std::string VBProject::Name() const {
  return Text(L"Name");
}
LONG VBProject::Mode() const {
  return Number(L"Mode");
}
LONG VBProject::Protection() const {
  return Number(L"Protection");
}
VBComponents VBProject::VBComponents() const {
  return Get<host::VBComponents>(L"VBComponents");
}

HWND Window::HWnd() const {
  // Handles of windows fit into 32 bits in any process.
  return reinterpret_cast<HWND>(static_cast<LONG_PTR>(Number(L"HWnd")));
}

CommandBars VBE::CommandBars() const {
  return Get<host::CommandBars>(L"CommandBars");
}
Events VBE::Events() const {
  return Get<host::Events>(L"Events");
}
CodePane VBE::ActiveCodePane() const {
  return Get<host::CodePane>(L"ActiveCodePane");
}
void VBE::SetActiveCodePane(const CodePane& pane) const {
  PutReference(L"ActiveCodePane", pane.get());
}
VBProject VBE::ActiveVBProject() const {
  return Get<host::VBProject>(L"ActiveVBProject");
}
Window VBE::MainWindow() const {
  return Get<host::Window>(L"MainWindow");
}

}  // namespace snip::host
