#pragma once

#include <string>

#include "history/Files.h"

namespace snip {

/// A time as the user's system writes it, in local time: with its date, and to the second.
std::string DateAndTime(UtcTime time);
/// The same to the minute, without the date of the same day as `now`.
std::string ShortTime(UtcTime time, UtcTime now);

}  // namespace snip
