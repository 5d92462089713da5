#include "ui/editor/RangeColours.h"

#include <richedit.h>

#include <utility>

namespace snip {
namespace {

// The compiler's headers declare these interfaces without their ids.
constexpr IID kTextDocument = {0x8CC497C0, 0xA1DF, 0x11CE, {0x80, 0x98, 0x00, 0xAA, 0x00, 0x47, 0xBE, 0x5D}};

}  // namespace

RangeColours::RangeColours(HWND control) {
  ComPtr<IUnknown> richEdit;
  if (SendMessageA(control, EM_GETOLEINTERFACE, 0, reinterpret_cast<LPARAM>(richEdit.Put())) == 0) return;
  if (!richEdit || FAILED(richEdit->QueryInterface(kTextDocument, document_.PutVoid()))) return;
  ComPtr<ITextRange> range;
  ComPtr<ITextFont> font;
  if (FAILED(document_->Range(0, 0, range.Put())) || FAILED(range->GetFont(font.Put()))) return;
  if (FAILED(font->GetDuplicate(look_.Put())) || FAILED(look_->Reset(tomUndefined))) return;
  range_ = std::move(range);
}

std::size_t RangeColours::TextLength() const {
  long length = 0;
  range_->GetStoryLength(&length);
  return static_cast<std::size_t>(length > 0 ? length - 1 : 0);  // the story's end counts as well
}

RangeColours::Session::Session(const RangeColours& colours) : colours_(colours) {
  long count = 0;
  colours_.document_->Undo(tomSuspend, &count);
  colours_.document_->Freeze(&count);
}

RangeColours::Session::~Session() {
  long count = 0;
  colours_.document_->Unfreeze(&count);
  colours_.document_->Undo(tomResume, &count);
}

void RangeColours::Session::Set(std::size_t begin, std::size_t end, COLORREF color) {
  if (FAILED(colours_.range_->SetRange(static_cast<long>(begin), static_cast<long>(end)))) return;
  colours_.look_->SetForeColor(static_cast<long>(color));
  colours_.range_->SetFont(colours_.look_.get());
}

}  // namespace snip
