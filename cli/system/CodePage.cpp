#include "cli/system/CodePage.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>

#include <cwctype>
#endif

#include <utf8cpp/utf8.h>

#include "cli/system/Failure.h"

namespace snip {
namespace {

constexpr unsigned int kWesternEuropean = 1252;

// What the platform knows about characters. Characters of single-byte code pages fit in a wchar_t.
#ifdef _WIN32
class Platform {
 public:
  explicit Platform(unsigned int codePage) : codePage_(codePage) {
    CPINFO info{};
    if (GetCPInfo(codePage, &info) != 0 && info.MaxCharSize == 1) return;
    throw Failure(ExitCode::Refused,
                  "this system's ANSI code page has characters of several bytes, which bns does not support");
  }
  static unsigned int SystemCodePage() { return GetACP(); }

  char32_t CharacterOf(char byte) const {
    wchar_t character = 0;
    MultiByteToWideChar(codePage_, 0, &byte, 1, &character, 1);
    return character;
  }
  static char32_t Lower(char32_t character) {
    const auto text = static_cast<wchar_t>(character);
    wchar_t small = text;
    LCMapStringW(LOCALE_INVARIANT, LCMAP_LOWERCASE, &text, 1, &small, 1);
    return small;
  }
  static bool IsLetterOrDigit(char32_t character) {
    const auto text = static_cast<wchar_t>(character);
    WORD kind = 0;
    return GetStringTypeW(CT_CTYPE1, &text, 1, &kind) != 0 && (kind & (C1_ALPHA | C1_DIGIT)) != 0;
  }

 private:
  unsigned int codePage_;
};
#else
class Platform {
 public:
  explicit Platform(unsigned int codePage)
      : converter_(iconv_open("UTF-32LE", ("CP" + std::to_string(codePage)).c_str())),
        locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
    // A converter that could not be opened fails here.
    if (iconv(converter_, nullptr, nullptr, nullptr, nullptr) != 0 || locale_ == nullptr) {
      throw Failure(ExitCode::File, "this system has no Windows-1252 code page or no C.UTF-8 locale");
    }
  }
  ~Platform() {
    iconv_close(converter_);
    freelocale(locale_);
  }
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;
  static unsigned int SystemCodePage() { return kWesternEuropean; }

  char32_t CharacterOf(char byte) const {
    char32_t character = 0;
    char* from = &byte;
    std::size_t fromSize = 1;
    char* to = reinterpret_cast<char*>(&character);
    std::size_t toSize = sizeof character;
    const bool known = iconv(converter_, &from, &fromSize, &to, &toSize) == 0;
    return known ? character : static_cast<unsigned char>(byte);
  }
  char32_t Lower(char32_t character) const { return towlower_l(character, locale_); }
  bool IsLetterOrDigit(char32_t character) const { return iswalnum_l(character, locale_) != 0; }

 private:
  iconv_t converter_;
  locale_t locale_;
};
#endif

}  // namespace

CodePage CodePage::System() {
  return CodePage(Platform::SystemCodePage());
}

CodePage CodePage::Windows1252() {
  return CodePage(kWesternEuropean);
}

CodePage::CodePage(unsigned int number) {
  const Platform platform(number);
  std::array<char32_t, 256> characters{};
  for (std::size_t i = 0; i < characters.size(); ++i) {
    characters[i] = platform.CharacterOf(static_cast<char>(i));
    utf8::append(characters[i], utf8_[i]);
    bytes_.emplace(characters[i], static_cast<char>(i));
    word[i] = platform.IsLetterOrDigit(characters[i]) || characters[i] == U'_';
  }
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto small = bytes_.find(platform.Lower(characters[i]));
    lower[i] = small != bytes_.end() ? small->second : static_cast<char>(i);
  }
}

std::string CodePage::ToUtf8(std::string_view ansi) const {
  std::string utf8;
  utf8.reserve(ansi.size());
  for (const char byte : ansi) utf8 += utf8_[static_cast<unsigned char>(byte)];
  return utf8;
}

void CodePage::Append(AnsiText& to, char32_t character) const {
  const auto byte = bytes_.find(character);
  to.text += byte != bytes_.end() ? byte->second : '?';
  to.lost += byte == bytes_.end() ? 1 : 0;
}

AnsiText CodePage::FromUtf8(std::string_view utf8) const {
  AnsiText ansi;
  for (const char32_t character : utf8::utf8to32(utf8::replace_invalid(utf8))) Append(ansi, character);
  return ansi;
}

AnsiText CodePage::FromUtf16(std::string_view bytes, bool bigEndian) const {
  AnsiText ansi;
  bool pairBegun = false;
  for (std::size_t i = 1; i < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i - 1]);
    const auto second = static_cast<unsigned char>(bytes[i]);
    const auto unit = static_cast<char32_t>(bigEndian ? first << 8U | second : second << 8U | first);
    // A surrogate pair is one character, which no single-byte code page has.
    const bool pairEnds = pairBegun && unit >> 10U == 0x37;
    if (!pairEnds) Append(ansi, unit);
    pairBegun = unit >> 10U == 0x36;
  }
  constexpr char32_t replacement = 0xFFFD;
  if (bytes.size() % 2 != 0) Append(ansi, replacement);
  return ansi;
}

}  // namespace snip
