#pragma once

#include <string_view>

#include "platform/Text.h"

namespace snip::bns {

// The fixed lines of library files (library/BnsFormat.h).
inline constexpr std::string_view kVersion1 = "BNS1.0";
inline constexpr std::string_view kVersion2 = "BNS2.0";
inline constexpr std::string_view kLineEnd = "\r\n";
inline constexpr std::string_view kDescriptionEnd = "(,)";
inline constexpr std::string_view kCodeEnd = "(.)";
inline constexpr std::string_view kListEnd = "...";
inline constexpr std::string_view kCodeEndV1 = ".";
inline constexpr std::string_view kListEndV1 = "..";

/// Whether a line, without its end, is that marker; blanks around it do not count.
inline bool IsMarker(std::string_view line, std::string_view marker) {
  // Every line of a library comes through here; most are longer than a marker and start with no blank.
  if (line.size() > marker.size() && line.front() != ' ' && line[marker.size()] != ' ') return false;
  return Trim(line) == marker;
}

/// The first line end tells whether a file has come to have LF alone.
inline bool HasUnixLines(std::string_view bytes) {
  const auto lineFeed = bytes.find('\n');
  return lineFeed != std::string_view::npos && (lineFeed == 0 || bytes[lineFeed - 1] != '\r');
}

}  // namespace snip::bns
