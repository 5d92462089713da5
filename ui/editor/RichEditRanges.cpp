#include "ui/editor/RichEditRanges.h"

#include <richedit.h>

#include <utility>

namespace snip {
namespace {

// The compiler's headers declare these interfaces without their ids.
constexpr IID kTextDocument = {0x8CC497C0, 0xA1DF, 0x11CE, {0x80, 0x98, 0x00, 0xAA, 0x00, 0x47, 0xBE, 0x5D}};

}  // namespace

RichEditRanges::RichEditRanges(HWND control) {
  ComPtr<IUnknown> richEdit;
  if (SendMessageA(control, EM_GETOLEINTERFACE, 0, reinterpret_cast<LPARAM>(richEdit.Put())) == 0) return;
  if (!richEdit || FAILED(richEdit->QueryInterface(kTextDocument, document_.PutVoid()))) return;
  ComPtr<ITextRange> range;
  ComPtr<ITextFont> font;
  if (FAILED(document_->Range(0, 0, range.Put())) || FAILED(range->GetFont(font.Put()))) return;
  if (FAILED(font->GetDuplicate(look_.Put())) || FAILED(look_->Reset(tomUndefined))) return;
  range_ = std::move(range);
}

std::size_t RichEditRanges::TextLength() const {
  long length = 0;
  range_->GetStoryLength(&length);
  return static_cast<std::size_t>(length > 0 ? length - 1 : 0);  // the story's end counts as well
}

std::u16string RichEditRanges::Text(std::size_t begin, std::size_t end) const {
  Bstr text;
  if (FAILED(range_->SetRange(static_cast<long>(begin), static_cast<long>(end)))) return {};
  if (FAILED(range_->GetText(text.Put())) || text.get() == nullptr) return {};
  return {reinterpret_cast<const char16_t*>(text.get()), SysStringLen(text.get())};
}

RichEditRanges::Unrecorded::Unrecorded(const RichEditRanges& ranges) : ranges_(ranges) {
  long count = 0;
  ranges_.document_->Undo(tomSuspend, &count);
}

RichEditRanges::Unrecorded::~Unrecorded() {
  long count = 0;
  ranges_.document_->Undo(tomResume, &count);
}

RichEditRanges::Colouring::Colouring(const RichEditRanges& ranges) : ranges_(ranges), unrecorded_(ranges) {
  long count = 0;
  ranges_.document_->Freeze(&count);
}

RichEditRanges::Colouring::~Colouring() {
  long count = 0;
  ranges_.document_->Unfreeze(&count);
}

void RichEditRanges::Colouring::SetColor(std::size_t begin, std::size_t end, COLORREF color) const {
  if (FAILED(ranges_.range_->SetRange(static_cast<long>(begin), static_cast<long>(end)))) return;
  ranges_.look_->SetForeColor(static_cast<long>(color));
  ranges_.range_->SetFont(ranges_.look_.get());
}

void RichEditRanges::Colouring::SetBackColor(std::size_t begin, std::size_t end, COLORREF color) const {
  if (FAILED(ranges_.range_->SetRange(static_cast<long>(begin), static_cast<long>(end)))) return;
  ComPtr<ITextFont> look;
  if (SUCCEEDED(ranges_.range_->GetFont(look.Put()))) look->SetBackColor(static_cast<long>(color));
}

}  // namespace snip
