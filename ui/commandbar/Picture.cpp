#include "ui/commandbar/Picture.h"

#include <utility>

#include "platform/Drawing.h"

namespace snip {
namespace {

Size BitmapSize(HBITMAP bitmap) {
  BITMAP description{};
  GetObjectA(bitmap, sizeof description, &description);
  return {description.bmWidth, description.bmHeight};
}

Size IconSize(HICON icon) {
  ICONINFO description{};
  if (GetIconInfo(icon, &description) == 0) return {};
  // Copies that are the caller's to delete.
  const UniqueBitmap color(description.hbmColor);
  const UniqueBitmap mask(description.hbmMask);
  if (color) return BitmapSize(color.get());
  // An icon in black and white keeps both its masks in one bitmap, one above the other.
  const Size both = BitmapSize(mask.get());
  return {both.width, both.height / 2};
}

UniqueBitmap LoadBitmapResource(int id) {
  return UniqueBitmap(static_cast<HBITMAP>(
      LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
}

UniqueBitmap Scaled(const Picture& picture, Size size) {
  UniqueBitmap scaled = ColorBitmap(size);
  const MemoryDC source(picture.bitmap());
  const MemoryDC target(scaled.get());
  SetStretchBltMode(target.get(), COLORONCOLOR);
  StretchBlt(target.get(), 0, 0, size.width, size.height, source.get(), 0, 0, picture.size().width,
             picture.size().height, SRCCOPY);
  return scaled;
}

}  // namespace

Picture::Picture(UniqueBitmap bitmap) : size_(BitmapSize(bitmap.get())) {
  if (bitmap) image_ = std::move(bitmap);
}

Picture::Picture(UniqueIcon icon) : size_(IconSize(icon.get())) {
  if (icon) image_ = std::move(icon);
}

Picture::Picture(UniqueMetafile metafile) {
  if (metafile) image_ = std::move(metafile);
}

std::shared_ptr<const Picture> Picture::FromResource(int bitmapId) {
  UniqueBitmap bitmap = LoadBitmapResource(bitmapId);
  return bitmap ? std::make_shared<const Picture>(std::move(bitmap)) : nullptr;
}

std::shared_ptr<const Picture> Picture::FromResource(int bitmapId, Size size) {
  std::shared_ptr<const Picture> picture = FromResource(bitmapId);
  if (picture == nullptr || picture->size() == size) return picture;
  return std::make_shared<const Picture>(Scaled(*picture, size));
}

Picture::Type Picture::type() const {
  constexpr Type kTypes[] = {Type::None, Type::Bitmap, Type::Icon, Type::EnhancedMetafile};
  return kTypes[image_.index()];
}

HBITMAP Picture::bitmap() const {
  const auto* bitmap = std::get_if<UniqueBitmap>(&image_);
  return bitmap != nullptr ? bitmap->get() : nullptr;
}

HICON Picture::icon() const {
  const auto* icon = std::get_if<UniqueIcon>(&image_);
  return icon != nullptr ? icon->get() : nullptr;
}

}  // namespace snip
