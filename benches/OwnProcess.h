#pragma once

#include <string>

namespace snip::bench {

/// Ends the program, which cannot measure.
[[noreturn]] void Fail(const char* what);

/// Runs this program for one of its groups, which tells by its exit code how many microseconds were measured;
/// gives milliseconds. For what a process does only once, or what depends on what it has done before.
double MeasuredInOwnProcess(const std::string& group);

/// What such a group has measured, as its exit code.
int Microseconds(double milliseconds);

}  // namespace snip::bench
