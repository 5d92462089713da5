#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace snip {

/// The button that closed a message box; the numbers are the platform's conventional ones.
enum class MessageResult : std::int16_t { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

/// The styles with which the program calls its message box (see MessageBoxLayout.h for what each bit does).
namespace MessageStyle {
constexpr int kOk = 0;
constexpr int kYesNo = 4;
constexpr int kQuestion = 32;
constexpr int kInformation = 64;
constexpr int kYesNoQuestion = kYesNo + kQuestion;
}  // namespace MessageStyle

/// Shows a message and waits for the answer. Lower layers are given one of these, so that they need not know
/// the message box; an empty title stands for the application's own.
using ShowMessageFunction =
    std::function<MessageResult(const std::string& prompt, int style, const std::string& title)>;

}  // namespace snip
