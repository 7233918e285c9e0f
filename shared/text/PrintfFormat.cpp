// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Every conversion is first turned into three narrow pieces (sign or prefix, leading zeros, digits)
// by the locale-free `std::to_chars`, then padded here. The C runtime's formatters are not used:
// they disagree about "%s" in wide formats, the I prefixes, exponent digits, infinities, rounding
// of ties and pointers, and read the decimal point from the process locale.
//
// Widths and precisions are held to FORMAT_RESULT_LIMIT while they are parsed: nothing larger can
// succeed, and nothing larger is ever allocated.

#include "shared/text/PrintfFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "shared/platform/CodePages.h"
#include "shared/text/StringUtility.h"

namespace shr {
namespace {

constexpr std::uint32_t ANSI_CODE_PAGE = 0;

/// A precision that is absent.
constexpr std::size_t NONE = static_cast<std::size_t>(-1);

/// More significant digits than any double has (767), so that "%g" may stop here.
constexpr std::size_t EXACT_DIGITS = 1100;

/// Bytes of the active code page that one wide unit is made of at most.
constexpr std::size_t BYTES_PER_UNIT = 8;

enum class Length {
  Default,
  Char,
  Short,
  Long,
  LongLong,
  IntMax,
  Size,
  Difference,
  LongDouble,
  Wide
};

struct Conversion {
  bool leftAlign = false;
  bool plus = false;
  bool space = false;
  bool alternate = false;
  bool zeroFill = false;
  std::size_t width = 0;
  std::size_t precision = NONE;
  Length length = Length::Default;
  char type = 0;
};

/// A number ready to be padded: `prefix`, then `zeros` zeros, then `digits`.
struct NumberText {
  std::string_view prefix;
  std::size_t zeros = 0;
  std::string_view digits;
};

char SignOf(const Conversion& conversion, bool negative) {
  if (negative) return '-';
  if (conversion.plus) return '+';
  return conversion.space ? ' ' : '\0';
}

void MakeAsciiUpper(char* first, const char* last) {
  for (; first != last; ++first) {
    if (*first >= 'a' && *first <= 'z') *first = static_cast<char>(*first - 'a' + 'A');
  }
}

bool IsUpper(char ch) {
  return ch >= 'A' && ch <= 'Z';
}

/// Writes the digits of a finite magnitude; the buffer can hold every result that may succeed.
class RealDigits {
public:
  /// Returns false when the digits do not fit.
  bool Write(double magnitude, const Conversion& conversion) {
    const char type = static_cast<char>(conversion.type | 0x20);
    if (!WriteBody(magnitude, type, conversion)) return false;
    if (conversion.alternate) InsertPoint(type);
    if (IsUpper(conversion.type)) MakeAsciiUpper(buffer_, end_);
    return true;
  }

  std::string_view Text() const { return {buffer_, static_cast<std::size_t>(end_ - buffer_)}; }

private:
  bool WriteBody(double magnitude, char type, const Conversion& conversion) {
    const std::size_t precision = conversion.precision;
    if (type == 'a') {
      return precision == NONE
                 ? Store(std::to_chars(buffer_, Limit(), magnitude, std::chars_format::hex))
                 : Store(magnitude, std::chars_format::hex, precision);
    }
    const std::size_t digits = precision == NONE ? 6 : precision;
    if (type == 'e') return Store(magnitude, std::chars_format::scientific, digits);
    if (type == 'f') return Store(magnitude, std::chars_format::fixed, digits);
    if (conversion.alternate)
      return WriteGeneralWithZeros(magnitude, std::max<std::size_t>(digits, 1));
    return Store(magnitude, std::chars_format::general, std::min(digits, EXACT_DIGITS));
  }

  /// "%#g": the notation of "%g" with its trailing zeros kept.
  bool WriteGeneralWithZeros(double magnitude, std::size_t digits) {
    if (!Store(magnitude, std::chars_format::scientific, digits - 1)) return false;
    const std::string_view text = Text();
    const std::size_t mark = text.rfind('e');
    int exponent = 0;
    const std::size_t first = mark + (text[mark + 1] == '+' ? 2 : 1);
    std::from_chars(text.data() + first, text.data() + text.size(), exponent);
    if (exponent < -4 || exponent >= static_cast<int>(digits)) return true;
    const auto decimals = static_cast<std::size_t>(static_cast<int>(digits) - 1 - exponent);
    return Store(magnitude, std::chars_format::fixed, decimals);
  }

  bool Store(double magnitude, std::chars_format format, std::size_t precision) {
    return Store(std::to_chars(buffer_, Limit(), magnitude, format, static_cast<int>(precision)));
  }

  bool Store(std::to_chars_result result) {
    end_ = result.ptr;
    return result.ec == std::errc();
  }

  /// Puts a point behind the integer digits when there is none.
  void InsertPoint(char type) {
    if (Text().find('.') != std::string_view::npos) return;
    char* const where = std::find(buffer_, end_, type == 'a' ? 'p' : 'e');
    std::copy_backward(where, end_, end_ + 1);
    *where = '.';
    ++end_;
  }

  char* Limit() { return buffer_ + FORMAT_RESULT_LIMIT; }

  char buffer_[FORMAT_RESULT_LIMIT + 1];
  char* end_ = buffer_;
};

/// Length of a terminated text, looking at no more than `limit` units.
template <typename Char>
std::size_t BoundedLength(const Char* text, std::size_t limit) {
  std::size_t length = 0;
  while (length < limit && text[length] != Char()) ++length;
  return length;
}

bool ConvertText(std::string_view text, std::wstring& converted) {
  return platform::AppendWide(ANSI_CODE_PAGE, text, converted);
}

bool ConvertText(std::wstring_view text, std::string& converted) {
  return platform::AppendNarrow(ANSI_CODE_PAGE, text, converted);
}

template <typename Char>
class Formatter {
public:
  using String = std::basic_string<Char>;
  using View = std::basic_string_view<Char>;
  using OtherChar = std::conditional_t<std::is_same_v<Char, char>, wchar_t, char>;

  Formatter(String& result, const Char* format, va_list arguments)
      : result_(result), next_(format) {
    va_copy(arguments_, arguments);
    result_.clear();
  }
  ~Formatter() { va_end(arguments_); }
  Formatter(const Formatter&) = delete;
  Formatter& operator=(const Formatter&) = delete;

  bool Run() {
    while (*next_ != Char()) {
      const Char* const first = next_;
      while (*next_ != Char() && *next_ != '%') ++next_;
      if (!Append(View(first, static_cast<std::size_t>(next_ - first)))) return false;
      if (*next_ == Char()) break;
      ++next_;
      if (*next_ == '%') {
        ++next_;
        if (!Fill(1, '%')) return false;
      } else if (!Convert()) {
        return false;
      }
    }
    return true;
  }

private:
  // Parsing.

  bool Convert() {
    Conversion conversion;
    ParseFlags(conversion);
    ParseWidth(conversion);
    ParsePrecision(conversion);
    conversion.length = ParseLength();
    // The terminator and every unit beyond ASCII are unknown conversions.
    if (*next_ <= 0 || *next_ > 126) return false;
    conversion.type = static_cast<char>(*next_++);
    switch (conversion.type) {
      case 'd':
      case 'i':
        return FormatSigned(conversion);
      case 'u':
      case 'x':
      case 'X':
      case 'o':
        return FormatUnsigned(conversion);
      case 'e':
      case 'E':
      case 'f':
      case 'F':
      case 'g':
      case 'G':
      case 'a':
      case 'A':
        return FormatReal(conversion);
      case 's':
      case 'S':
        return TakesOtherWidth(conversion) ? FormatText<OtherChar>(conversion)
                                           : FormatText<Char>(conversion);
      case 'c':
      case 'C':
        return TakesOtherWidth(conversion) ? FormatCharacter<OtherChar>(conversion)
                                           : FormatCharacter<Char>(conversion);
      case 'p':
        return FormatPointer(conversion);
      default:
        return false;
    }
  }

  void ParseFlags(Conversion& conversion) {
    for (;; ++next_) {
      if (*next_ == '-') {
        conversion.leftAlign = true;
      } else if (*next_ == '+') {
        conversion.plus = true;
      } else if (*next_ == ' ') {
        conversion.space = true;
      } else if (*next_ == '#') {
        conversion.alternate = true;
      } else if (*next_ == '0') {
        conversion.zeroFill = true;
      } else {
        return;
      }
    }
  }

  void ParseWidth(Conversion& conversion) {
    if (*next_ != '*') {
      conversion.width = ParseCount();
      return;
    }
    ++next_;
    const int width = va_arg(arguments_, int);
    if (width < 0) conversion.leftAlign = true;
    conversion.width = Limited(static_cast<std::size_t>(std::abs(static_cast<long long>(width))));
  }

  void ParsePrecision(Conversion& conversion) {
    if (*next_ != '.') return;
    ++next_;
    if (*next_ != '*') {
      conversion.precision = ParseCount();
      return;
    }
    ++next_;
    const int precision = va_arg(arguments_, int);
    if (precision >= 0) conversion.precision = Limited(static_cast<std::size_t>(precision));
  }

  std::size_t ParseCount() {
    std::size_t count = 0;
    for (; *next_ >= '0' && *next_ <= '9'; ++next_) {
      count = Limited(count * 10 + static_cast<std::size_t>(*next_ - '0'));
    }
    return count;
  }

  static std::size_t Limited(std::size_t count) { return std::min(count, FORMAT_RESULT_LIMIT); }

  /// Steps over `text` when it comes next.
  bool Accept(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (next_[i] != static_cast<Char>(text[i])) return false;
    }
    next_ += text.size();
    return true;
  }

  Length ParseLength() {
    if (Accept("hh")) return Length::Char;
    if (Accept("h")) return Length::Short;
    if (Accept("ll") || Accept("I64")) return Length::LongLong;
    if (Accept("l")) return Length::Long;
    if (Accept("I32")) return Length::Default;
    if (Accept("I") || Accept("z")) return Length::Size;
    if (Accept("t")) return Length::Difference;
    if (Accept("j")) return Length::IntMax;
    if (Accept("L")) return Length::LongDouble;
    if (Accept("w")) return Length::Wide;
    return Length::Default;
  }

  /// True when a text or character argument has the other width than the format.
  static bool TakesOtherWidth(const Conversion& conversion) {
    constexpr bool wideFormat = std::is_same_v<Char, wchar_t>;
    switch (conversion.length) {
      case Length::Short:
      case Length::Char:
        return wideFormat;
      case Length::Long:
      case Length::Wide:
        return !wideFormat;
      default:
        return conversion.type == 'S' || conversion.type == 'C';
    }
  }

  // Integers.

  bool FormatSigned(const Conversion& conversion) {
    const std::int64_t value = TakeSigned(conversion.length);
    const auto bits = static_cast<std::uint64_t>(value);
    const char sign = SignOf(conversion, value < 0);
    return FormatInteger(conversion, value < 0 ? 0 - bits : bits,
                         std::string_view(&sign, sign == '\0' ? 0 : 1), 10);
  }

  bool FormatUnsigned(const Conversion& conversion) {
    const std::uint64_t value = TakeUnsigned(conversion.length);
    if (conversion.type == 'u') return FormatInteger(conversion, value, {}, 10);
    if (conversion.type == 'o') return FormatInteger(conversion, value, {}, 8);
    const std::string_view prefix = conversion.type == 'x' ? "0x" : "0X";
    return FormatInteger(conversion, value,
                         conversion.alternate && value != 0 ? prefix : std::string_view(), 16);
  }

  bool FormatInteger(const Conversion& conversion, std::uint64_t magnitude, std::string_view prefix,
                     int base) {
    char buffer[24];
    char* end = buffer;
    if (magnitude != 0 || conversion.precision != 0) {
      end = std::to_chars(buffer, buffer + sizeof buffer, magnitude, base).ptr;
    }
    if (conversion.type == 'X') MakeAsciiUpper(buffer, end);
    NumberText number{prefix, 0, {buffer, static_cast<std::size_t>(end - buffer)}};
    if (conversion.precision != NONE && conversion.precision > number.digits.size()) {
      number.zeros = conversion.precision - number.digits.size();
    }
    const bool startsWithZero = number.zeros > 0 || number.digits.substr(0, 1) == "0";
    if (base == 8 && conversion.alternate && !startsWithZero) number.zeros = 1;
    return PutNumber(conversion, number, conversion.zeroFill && conversion.precision == NONE);
  }

  std::int64_t TakeSigned(Length length) {
    switch (length) {
      case Length::Char:
        return static_cast<signed char>(va_arg(arguments_, int));
      case Length::Short:
        return static_cast<short>(va_arg(arguments_, int));
      case Length::Long:
        return va_arg(arguments_, long);
      case Length::LongLong:
        return va_arg(arguments_, long long);
      case Length::IntMax:
        return va_arg(arguments_, std::intmax_t);
      case Length::Size:
      case Length::Difference:
        return va_arg(arguments_, std::ptrdiff_t);
      default:
        return va_arg(arguments_, int);
    }
  }

  std::uint64_t TakeUnsigned(Length length) {
    switch (length) {
      case Length::Char:
        return static_cast<unsigned char>(va_arg(arguments_, unsigned int));
      case Length::Short:
        return static_cast<unsigned short>(va_arg(arguments_, unsigned int));
      case Length::Long:
        return va_arg(arguments_, unsigned long);
      case Length::LongLong:
        return va_arg(arguments_, unsigned long long);
      case Length::IntMax:
        return va_arg(arguments_, std::uintmax_t);
      case Length::Size:
      case Length::Difference:
        return va_arg(arguments_, std::size_t);
      default:
        return va_arg(arguments_, unsigned int);
    }
  }

  bool FormatPointer(Conversion conversion) {
    conversion.type = 'X';
    conversion.precision = 16;
    const auto address = reinterpret_cast<std::uintptr_t>(va_arg(arguments_, void*));
    return FormatInteger(conversion, address, {}, 16);
  }

  // Real numbers.

  bool FormatReal(const Conversion& conversion) {
    const double value = conversion.length == Length::LongDouble
                             ? static_cast<double>(va_arg(arguments_, long double))
                             : va_arg(arguments_, double);
    const char sign = SignOf(conversion, std::signbit(value));
    std::string prefix(sign == '\0' ? 0 : 1, sign);
    const bool upper = IsUpper(conversion.type);
    if (std::isnan(value)) return PutNumber(conversion, {prefix, 0, upper ? "NAN" : "nan"}, false);
    if (std::isinf(value)) return PutNumber(conversion, {prefix, 0, upper ? "INF" : "inf"}, false);
    if (conversion.type == 'a') prefix += "0x";
    if (conversion.type == 'A') prefix += "0X";
    RealDigits digits;
    if (!digits.Write(std::fabs(value), conversion)) return false;
    return PutNumber(conversion, {prefix, 0, digits.Text()}, conversion.zeroFill);
  }

  bool PutNumber(const Conversion& conversion, NumberText number, bool zeroFill) {
    const std::size_t length = number.prefix.size() + number.zeros + number.digits.size();
    const std::size_t padding = conversion.width > length ? conversion.width - length : 0;
    if (zeroFill && !conversion.leftAlign) {
      number.zeros += padding;
      return AppendAscii(number.prefix) && Fill(number.zeros, '0') && AppendAscii(number.digits);
    }
    return Fill(conversion.leftAlign ? 0 : padding, ' ') && AppendAscii(number.prefix) &&
           Fill(number.zeros, '0') && AppendAscii(number.digits) &&
           Fill(conversion.leftAlign ? padding : 0, ' ');
  }

  // Text.

  template <typename Argument>
  bool FormatText(const Conversion& conversion) {
    static constexpr Argument NULL_TEXT[] = {'(', 'n', 'u', 'l', 'l', ')', 0};
    const Argument* text = va_arg(arguments_, const Argument*);
    if (text == nullptr) text = NULL_TEXT;
    const std::size_t limit = FORMAT_RESULT_LIMIT * BYTES_PER_UNIT;
    const std::size_t length = BoundedLength(text, std::min(conversion.precision, limit));
    if (length == limit) return false;
    return PutText(conversion, std::basic_string_view<Argument>(text, length));
  }

  template <typename Argument>
  bool FormatCharacter(const Conversion& conversion) {
    const auto ch = static_cast<Argument>(va_arg(arguments_, int));
    return PutText(conversion, std::basic_string_view<Argument>(&ch, 1));
  }

  bool PutText(const Conversion& conversion, View text) {
    const std::size_t padding = conversion.width > text.size() ? conversion.width - text.size() : 0;
    return Fill(conversion.leftAlign ? 0 : padding, ' ') && Append(text) &&
           Fill(conversion.leftAlign ? padding : 0, ' ');
  }

  bool PutText(const Conversion& conversion, std::basic_string_view<OtherChar> text) {
    String converted;
    return ConvertText(text, converted) && PutText(conversion, View(converted));
  }

  // Bounded output.

  bool HasRoom(std::size_t count) const { return count < FORMAT_RESULT_LIMIT - result_.size(); }

  bool Append(View text) {
    if (!HasRoom(text.size())) return false;
    result_.append(text);
    return true;
  }

  bool AppendAscii(std::string_view text) {
    if (!HasRoom(text.size())) return false;
    result_.append(text.begin(), text.end());
    return true;
  }

  bool Fill(std::size_t count, char ch) {
    if (!HasRoom(count)) return false;
    result_.append(count, static_cast<Char>(ch));
    return true;
  }

  String& result_;
  const Char* next_;
  va_list arguments_;
};

}  // namespace

bool PrintfFormat(std::string& result, const char* format, va_list arguments) {
  return Formatter<char>(result, format, arguments).Run();
}

bool PrintfFormat(std::wstring& result, const wchar_t* format, va_list arguments) {
  return Formatter<wchar_t>(result, format, arguments).Run();
}

}  // namespace shr
