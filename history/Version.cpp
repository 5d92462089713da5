#include "history/Version.h"

#include <array>
#include <charconv>

#include "library/Library.h"

namespace snip {
namespace {

constexpr std::array kTags{VersionTag::Saved, VersionTag::Outside, VersionTag::Cut, VersionTag::Unsaved};
constexpr std::size_t kTimeLength = 18;  // yyyyMMdd-HHmmssfff

void AppendNumber(std::string& text, long long number, std::size_t digits) {
  const std::string shown = std::to_string(number);
  if (shown.size() < digits) text.append(digits - shown.size(), '0');
  text += shown;
}

std::optional<int> Number(std::string_view digits) {
  int number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size() || digits.front() == '-')
    return std::nullopt;
  return number;
}

std::optional<UtcTime> TimeOf(std::string_view text) {
  using namespace std::chrono;
  if (text.size() != kTimeLength || text[8] != '-') return std::nullopt;
  const auto years = Number(text.substr(0, 4)), months = Number(text.substr(4, 2)),
             days_ = Number(text.substr(6, 2));
  const auto clock = Number(text.substr(9, 9));
  if (!years || !months || !days_ || !clock) return std::nullopt;
  const year_month_day date{year(*years), month(static_cast<unsigned>(*months)),
                            day(static_cast<unsigned>(*days_))};
  const int hour = *clock / 10000000, minute = *clock / 100000 % 100, milli = *clock % 100000;
  if (!date.ok() || hour > 23 || minute > 59 || milli > 59999) return std::nullopt;
  return sys_days(date) + hours(hour) + minutes(minute) + milliseconds(milli);
}

}  // namespace

std::string_view NameOf(VersionTag tag) {
  switch (tag) {
    case VersionTag::Outside:
      return "outside";
    case VersionTag::Cut:
      return "cut";
    case VersionTag::Unsaved:
      return "unsaved";
    default:
      return "";
  }
}

std::string FileNameOf(const Version& version) {
  using namespace std::chrono;
  const auto day = floor<days>(version.time);
  const year_month_day date{day};
  const hh_mm_ss clock{version.time - day};
  std::string name;
  AppendNumber(name, int{date.year()}, 4);
  AppendNumber(name, unsigned{date.month()}, 2);
  AppendNumber(name, unsigned{date.day()}, 2);
  name += '-';
  AppendNumber(name, clock.hours().count(), 2);
  AppendNumber(name, clock.minutes().count(), 2);
  AppendNumber(name, clock.seconds().count(), 2);
  AppendNumber(name, clock.subseconds().count(), 3);
  if (version.tag != VersionTag::Saved) name += '-' + std::string(NameOf(version.tag));
  return name + std::string(kLibraryExtension);
}

std::optional<Version> VersionOfFileName(std::string_view file) {
  if (!file.ends_with(kLibraryExtension)) return std::nullopt;
  const std::string_view name = file.substr(0, file.size() - kLibraryExtension.size());
  const auto time = TimeOf(name.substr(0, kTimeLength));
  if (!time) return std::nullopt;
  const std::string_view tagged = name.substr(kTimeLength);
  for (const VersionTag tag : kTags) {
    const Version version{.time = *time, .tag = tag};
    if (tagged == (tag == VersionTag::Saved ? "" : '-' + std::string(NameOf(tag)))) return version;
  }
  return std::nullopt;
}

}  // namespace snip
