#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "library/Library.h"
#include "platform/Geometry.h"

/// How failed comparisons show the program's own types.

namespace snip {

inline void PrintTo(const Snippet& snippet, std::ostream* out) {
  *out << "{Name: " << testing::PrintToString(snippet.Name)
       << ", Attachment: " << testing::PrintToString(snippet.Attachment)
       << ", Code: " << testing::PrintToString(snippet.Code)
       << ", Description: " << testing::PrintToString(snippet.Description) << "}";
}

inline void PrintTo(const Size& size, std::ostream* out) {
  *out << size.width << " x " << size.height;
}

inline void PrintTo(const Rect& rect, std::ostream* out) {
  *out << rect.width << " x " << rect.height << " at (" << rect.left << ", " << rect.top << ")";
}

}  // namespace snip
