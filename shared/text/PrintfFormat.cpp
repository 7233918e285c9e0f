// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Every conversion is first turned into three narrow pieces (sign or prefix, leading zeros,
// digits), then padded here. The digits of common numbers come from shared/text/DecimalDigits.h,
// others from the locale-free `std::to_chars`. The C runtime's formatters are not used: they
// disagree about
// "%s" in wide formats, the I prefixes, exponent digits, infinities, rounding of ties and pointers,
// and read the decimal point from the process locale.
//
// The result grows in a buffer on the stack, as long as a result may be, and is handed over when it
// is complete: a string that is used again allocates nothing.
//
// Widths and precisions are held to FORMAT_RESULT_LIMIT while they are parsed: nothing larger can
// succeed, and nothing larger is ever allocated.

#include "shared/text/PrintfFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <type_traits>

#include "shared/platform/CodePages.h"
#include "shared/text/DecimalDigits.h"
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

/// Writes the digits of most numbers into a small buffer.
class QuickDigits {
public:
  /// Returns false when the quick ways do not serve the number.
  bool Write(double magnitude, const Conversion& conversion) {
    const std::size_t digits = conversion.precision == NONE ? 6 : conversion.precision;
    if (conversion.alternate || digits > MAX_QUICK_SIGNIFICANT) return false;
    const int count = static_cast<int>(digits);
    switch (conversion.type) {
      case 'f':
      case 'F':
        return WriteFixed(magnitude, count);
      case 'e':
      case 'E':
        return count < MAX_QUICK_SIGNIFICANT && WriteScientific(magnitude, count, conversion.type);
      case 'g':
      case 'G':
        return WriteGeneral(magnitude, std::max(count, 1),
                            static_cast<char>(conversion.type - 'g' + 'e'));
      default:
        return false;
    }
  }

  std::string_view Text() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

private:
  bool WriteFixed(double magnitude, int decimals) {
    FixedDecimal number;
    if (!RoundToDecimals(magnitude, decimals, number)) return false;
    end_ = buffer_ + MANTISSA_SIZE;
    begin_ = TakeDigits(number.fraction, decimals, end_);
    if (decimals > 0) *--begin_ = '.';
    begin_ = TakeDigits(number.whole, CountDigits(number.whole), begin_);
    return true;
  }

  bool WriteScientific(double magnitude, int decimals, char mark) {
    SignificantDecimal number;
    if (!RoundToSignificant(magnitude, decimals + 1, number)) return false;
    WriteMantissa(number.digits, decimals);
    WriteExponent(number.exponent, mark);
    return true;
  }

  /// As many significant digits as asked for, but no zeros at the end of the decimals.
  bool WriteGeneral(double magnitude, int count, char mark) {
    SignificantDecimal number;
    if (!RoundToSignificant(magnitude, count, number)) return false;
    const bool isFixed = number.exponent >= -4 && number.exponent < count;
    int decimals = isFixed ? count - 1 - number.exponent : count - 1;
    while (decimals > 0 && number.digits % 10 == 0) {
      number.digits /= 10;
      --decimals;
    }
    WriteMantissa(number.digits, decimals);
    if (!isFixed) WriteExponent(number.exponent, mark);
    return true;
  }

  /// digits / 10^decimals
  void WriteMantissa(std::uint64_t digits, int decimals) {
    end_ = buffer_ + MANTISSA_SIZE;
    begin_ = TakeDigits(digits, decimals, end_);
    if (decimals > 0) *--begin_ = '.';
    begin_ = TakeDigits(digits, CountDigits(digits), begin_);
  }

  void WriteExponent(int exponent, char mark) {
    *end_++ = mark;
    *end_++ = exponent < 0 ? '-' : '+';
    auto power = static_cast<std::uint64_t>(std::abs(exponent));
    const int count = power < 100 ? 2 : 3;
    end_ += count;
    TakeDigits(power, count, end_);
  }

  /// The longest mantissa: a whole number of 64 bits, a point and the decimals.
  static constexpr std::size_t MANTISSA_SIZE = 20 + 1 + MAX_QUICK_DECIMALS;
  static constexpr std::size_t EXPONENT_SIZE = 5;
  char buffer_[MANTISSA_SIZE + EXPONENT_SIZE];
  char* begin_ = buffer_;
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

  Formatter(const Char* format, va_list arguments) : next_(format) {
    va_copy(arguments_, arguments);
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

  View Result() const { return {buffer_, static_cast<std::size_t>(end_ - buffer_)}; }

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
    for (; *next_ <= '0'; ++next_) {
      switch (*next_) {
        case '-':
          conversion.leftAlign = true;
          break;
        case '+':
          conversion.plus = true;
          break;
        case ' ':
          conversion.space = true;
          break;
        case '#':
          conversion.alternate = true;
          break;
        case '0':
          conversion.zeroFill = true;
          break;
        default:
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
    switch (*next_) {
      case 'h':
        return Accept("hh") ? Length::Char : Take(Length::Short);
      case 'l':
        return Accept("ll") ? Length::LongLong : Take(Length::Long);
      case 'I':
        if (Accept("I64")) return Length::LongLong;
        return Accept("I32") ? Length::Default : Take(Length::Size);
      case 'z':
        return Take(Length::Size);
      case 't':
        return Take(Length::Difference);
      case 'j':
        return Take(Length::IntMax);
      case 'L':
        return Take(Length::LongDouble);
      case 'w':
        return Take(Length::Wide);
      default:
        return Length::Default;
    }
  }

  Length Take(Length length) {
    ++next_;
    return length;
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
    char* begin = buffer;
    char* end = buffer + sizeof buffer;
    if (magnitude == 0 && conversion.precision == 0) {
      end = buffer;
    } else if (base == 10) {
      begin = TakeDigits(magnitude, CountDigits(magnitude), end);
    } else {
      end = std::to_chars(buffer, end, magnitude, base).ptr;
    }
    if (conversion.type == 'X') MakeAsciiUpper(buffer, end);
    NumberText number{prefix, 0, {begin, static_cast<std::size_t>(end - begin)}};
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
    // A sign and the mark of hexadecimal digits.
    const char sign = SignOf(conversion, std::signbit(value));
    const char marks[] = {sign, '0', static_cast<char>(conversion.type - 'a' + 'x')};
    const bool isHexadecimal = conversion.type == 'a' || conversion.type == 'A';
    const std::string_view prefix(marks + (sign == '\0' ? 1 : 0),
                                  (sign == '\0' ? 0u : 1u) + (isHexadecimal ? 2u : 0u));
    if (!std::isfinite(value)) return PutWord(conversion, value, prefix.substr(0, sign != '\0'));
    QuickDigits digits;
    if (!digits.Write(std::fabs(value), conversion)) {
      return PutLongReal(conversion, std::fabs(value), prefix);
    }
    return PutNumber(conversion, {prefix, 0, digits.Text()}, conversion.zeroFill);
  }

  bool PutWord(const Conversion& conversion, double value, std::string_view sign) {
    const bool upper = IsUpper(conversion.type);
    const char* const word = std::isnan(value) ? (upper ? "NAN" : "nan") : (upper ? "INF" : "inf");
    return PutNumber(conversion, {sign, 0, word}, false);
  }

  bool PutLongReal(const Conversion& conversion, double magnitude, std::string_view prefix) {
    RealDigits digits;
    return digits.Write(magnitude, conversion) &&
           PutNumber(conversion, {prefix, 0, digits.Text()}, conversion.zeroFill);
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

  bool HasRoom(std::size_t count) const {
    return count < static_cast<std::size_t>(buffer_ + FORMAT_RESULT_LIMIT - end_);
  }

  bool Append(View text) {
    if (!HasRoom(text.size())) return false;
    end_ = std::copy(text.begin(), text.end(), end_);
    return true;
  }

  bool AppendAscii(std::string_view text) {
    if (!HasRoom(text.size())) return false;
    for (const char ch : text) *end_++ = static_cast<Char>(ch);
    return true;
  }

  bool Fill(std::size_t count, char ch) {
    if (!HasRoom(count)) return false;
    end_ = std::fill_n(end_, count, static_cast<Char>(ch));
    return true;
  }

  const Char* next_;
  va_list arguments_;
  Char* end_ = buffer_;
  Char buffer_[FORMAT_RESULT_LIMIT];
};

template <typename Char>
bool Format(std::basic_string<Char>& text, const Char* format, va_list arguments) {
  Formatter<Char> formatter(format, arguments);
  if (!formatter.Run()) return false;
  text.assign(formatter.Result());
  return true;
}

template <typename Char>
bool AppendFormat(std::basic_string<Char>& text, const Char* format, va_list arguments) {
  Formatter<Char> formatter(format, arguments);
  if (!formatter.Run()) return false;
  text.append(formatter.Result());
  return true;
}

}  // namespace

bool PrintfFormat(std::string& text, const char* format, va_list arguments) {
  return Format(text, format, arguments);
}

bool PrintfFormat(std::wstring& text, const wchar_t* format, va_list arguments) {
  return Format(text, format, arguments);
}

bool PrintfAppend(std::string& text, const char* format, va_list arguments) {
  return AppendFormat(text, format, arguments);
}

bool PrintfAppend(std::wstring& text, const wchar_t* format, va_list arguments) {
  return AppendFormat(text, format, arguments);
}

}  // namespace shr
