#pragma once

#include <windows.h>

#include <memory>
#include <variant>

#include "platform/Geometry.h"
#include "platform/Handle.h"

namespace snip {

/// A picture object: owns a bitmap, an icon or a metafile, or is empty. Never changes once it is made, so
/// that buttons and menus share it.
class Picture {
 public:
  /// The kinds by the platform's numbers for them.
  enum class Type { None = 0, Bitmap = 1, Icon = 3, EnhancedMetafile = 4 };

  Picture() = default;
  explicit Picture(UniqueBitmap bitmap);
  explicit Picture(UniqueIcon icon);
  explicit Picture(UniqueMetafile metafile);

  /// The program's bitmap resource of that number; null when there is none. With a size given it is brought
  /// to it by repeating or leaving out pixels, so that no colour comes up that the picture does not have: a
  /// mix with the mask colour would show as a fringe.
  static std::shared_ptr<const Picture> FromResource(int bitmapId);
  static std::shared_ptr<const Picture> FromResource(int bitmapId, Size size);

  Type type() const;
  bool empty() const { return type() == Type::None; }
  /// In pixels; of a metafile, which has none of its own, nothing.
  Size size() const { return size_; }

  /// Null for a picture of another type. The handle stays the picture's.
  HBITMAP bitmap() const;
  HICON icon() const;

 private:
  std::variant<std::monostate, UniqueBitmap, UniqueIcon, UniqueMetafile> image_;
  Size size_;
};

}  // namespace snip
