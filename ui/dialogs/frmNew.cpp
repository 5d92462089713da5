#include "ui/dialogs/frmNew.h"

#include "platform/Fonts.h"

namespace snip {

std::string frmNew::ShowMe(HWND owner, const std::string& name) {
  name_ = name;
  const INT_PTR result = ShowModal(owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME);
  return result == IDOK ? name_ : std::string();
}

void frmNew::OnInit() {
  UseFont(MessageFont());
  SetWindowTextA(hWnd(), "New Code Library");
  AddLabel("Enter a name for the new library.", {7, 7, 186, 8});
  const HWND txtName =
      Add("EDIT", "", WS_TABSTOP | ES_AUTOHSCROLL, kNameId, {7, 18, 186, 14}, WS_EX_CLIENTEDGE);
  AddDefaultButton("OK", IDOK, {89, 39, 50, 14});
  AddButton("Cancel", IDCANCEL, {143, 39, 50, 14});
  field_.Attach(txtName);
  field_.SetText(name_);
  SizeAndCentre({Across(200), Down(60)});
  SendMessageA(txtName, EM_SETSEL, 0, -1);
  SetFocus(txtName);
  PaintCaption();
}

void frmNew::OnCommand(int id, int notification) {
  if (notification != BN_CLICKED) return;
  if (id == IDOK) cmdOK_Click();
  if (id == IDCANCEL) End(IDCANCEL);
}

void frmNew::cmdOK_Click() {
  const std::optional<std::string> name = field_.Text();
  if (!name) return;
  name_ = *name;
  End(IDOK);
}

}  // namespace snip
