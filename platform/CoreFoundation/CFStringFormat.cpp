#include <locale.h>
#include <string.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <variant>
#include <vector>

#include "CoreFoundation/CFString.h"
#include "CoreFoundation/CFStringEncodings.h"
#include "CoreFoundation/CFStringObject.h"
#include "Memory/RetainPtr.h"

namespace {

/// How an argument lies in the list.
enum class Kind { kNone, kInt, kLong, kLongLong, kIntMax, kSize, kPtrDiff, kDouble, kLongDouble, kPointer };

/// A width or precision beyond this serves nobody, and would let a format ask for any amount of memory.
constexpr int kMostColumns = 4096;
constexpr size_t kMostArguments = 64;

struct Conversion {
  std::string flags;
  int width = -1;
  int precision = -1;
  size_t widthArgument = 0;      // from 1; 0 for none
  size_t precisionArgument = 0;  // the same
  size_t argument = 0;
  std::string length;
  char16_t letter = 0;
};

using Piece = std::variant<std::u16string, Conversion>;
using Argument = std::variant<std::intmax_t, double, const void*>;

Kind KindOf(const Conversion& conversion) {
  switch (conversion.letter) {
    case u'd':
    case u'i':
    case u'u':
    case u'x':
    case u'X':
    case u'o':
      if (conversion.length == "l") return Kind::kLong;
      if (conversion.length == "ll" || conversion.length == "q") return Kind::kLongLong;
      if (conversion.length == "j") return Kind::kIntMax;
      if (conversion.length == "z") return Kind::kSize;
      if (conversion.length == "t") return Kind::kPtrDiff;
      return Kind::kInt;
    case u'c':
    case u'C':
      return Kind::kInt;
    case u'f':
    case u'F':
    case u'e':
    case u'E':
    case u'g':
    case u'G':
    case u'a':
    case u'A':
      return conversion.length == "L" ? Kind::kLongDouble : Kind::kDouble;
    case u'@':
    case u's':
    case u'S':
    case u'p':
      return Kind::kPointer;
    default:
      return Kind::kNone;
  }
}

class FormatReader {
 public:
  explicit FormatReader(std::u16string_view format) : format_(format) {}

  std::vector<Piece> Read() {
    std::vector<Piece> pieces;
    std::u16string text;
    while (at_ < format_.size()) {
      const char16_t unit = format_[at_++];
      if (unit != u'%') {
        text.push_back(unit);
        continue;
      }
      const size_t start = at_;
      if (Take(u'%')) {
        text.push_back(u'%');
        continue;
      }
      Conversion conversion = ReadConversion();
      if (KindOf(conversion) == Kind::kNone) {
        // Not a conversion: it stands for itself.
        at_ = start;
        text.push_back(u'%');
        continue;
      }
      if (conversion.argument == 0) conversion.argument = ++lastArgument_;
      pieces.emplace_back(std::move(text));
      text.clear();
      pieces.emplace_back(std::move(conversion));
    }
    pieces.emplace_back(std::move(text));
    return pieces;
  }

 private:
  bool Take(char16_t unit) {
    if (at_ >= format_.size() || format_[at_] != unit) return false;
    ++at_;
    return true;
  }

  int ReadNumber() {
    int number = 0;
    while (at_ < format_.size() && format_[at_] >= u'0' && format_[at_] <= u'9') {
      number = std::min(number * 10 + (format_[at_++] - u'0'), kMostColumns);
    }
    return number;
  }

  /// "3$" at this place; 0 for none.
  size_t ReadPosition() {
    const size_t start = at_;
    const int number = ReadNumber();
    if (number > 0 && Take(u'$')) return static_cast<size_t>(number);
    at_ = start;
    return 0;
  }

  size_t ReadStar() {
    const size_t position = ReadPosition();
    return position != 0 ? position : ++lastArgument_;
  }

  Conversion ReadConversion() {
    const size_t before = lastArgument_;
    Conversion conversion;
    conversion.argument = ReadPosition();
    while (at_ < format_.size() &&
           std::u16string_view(u"-+ #0'").find(format_[at_]) != std::u16string_view::npos) {
      conversion.flags.push_back(static_cast<char>(format_[at_++]));
    }
    if (Take(u'*')) {
      conversion.widthArgument = ReadStar();
    } else if (const int width = ReadNumber(); width > 0) {
      conversion.width = width;
    }
    if (Take(u'.')) {
      if (Take(u'*')) {
        conversion.precisionArgument = ReadStar();
      } else {
        conversion.precision = ReadNumber();
      }
    }
    while (at_ < format_.size() &&
           std::u16string_view(u"hlLqjzt").find(format_[at_]) != std::u16string_view::npos) {
      conversion.length.push_back(static_cast<char>(format_[at_++]));
    }
    if (at_ < format_.size()) conversion.letter = format_[at_++];
    if (KindOf(conversion) == Kind::kNone) lastArgument_ = before;
    return conversion;
  }

  std::u16string_view format_;
  size_t at_ = 0;
  size_t lastArgument_ = 0;
};

/// The kind of each argument, in the order of the list; not sound when one is used in two ways or there is a
/// gap, since then nothing behind it can be found.
std::vector<Kind> KindsOf(const std::vector<Piece>& pieces, bool* sound) {
  std::vector<Kind> kinds;
  *sound = true;
  const auto note = [&](size_t argument, Kind kind) {
    if (argument == 0) return;
    if (argument > kMostArguments) {
      *sound = false;
      return;
    }
    if (kinds.size() < argument) kinds.resize(argument, Kind::kNone);
    Kind& known = kinds[argument - 1];
    if (known != Kind::kNone && known != kind) *sound = false;
    known = kind;
  };
  for (const Piece& piece : pieces) {
    const auto* conversion = std::get_if<Conversion>(&piece);
    if (conversion == nullptr) continue;
    note(conversion->widthArgument, Kind::kInt);
    note(conversion->precisionArgument, Kind::kInt);
    note(conversion->argument, KindOf(*conversion));
  }
  if (std::find(kinds.begin(), kinds.end(), Kind::kNone) != kinds.end()) *sound = false;
  return kinds;
}

Argument Fetch(Kind kind, va_list* arguments) {
  switch (kind) {
    case Kind::kInt:
      return static_cast<std::intmax_t>(va_arg(*arguments, int));
    case Kind::kLong:
      return static_cast<std::intmax_t>(va_arg(*arguments, long));
    case Kind::kLongLong:
      return static_cast<std::intmax_t>(va_arg(*arguments, long long));
    case Kind::kIntMax:
      return va_arg(*arguments, std::intmax_t);
    case Kind::kSize:
      return static_cast<std::intmax_t>(va_arg(*arguments, size_t));
    case Kind::kPtrDiff:
      return static_cast<std::intmax_t>(va_arg(*arguments, std::ptrdiff_t));
    case Kind::kDouble:
      return va_arg(*arguments, double);
    case Kind::kLongDouble:
      return static_cast<double>(va_arg(*arguments, long double));
    default:
      return static_cast<const void*>(va_arg(*arguments, void*));
  }
}

/// What the length letters leave of an integer.
std::intmax_t Narrow(std::intmax_t value, const Conversion& conversion) {
  const bool isSigned = conversion.letter == u'd' || conversion.letter == u'i';
  if (KindOf(conversion) != Kind::kInt) return value;
  if (conversion.length == "hh")
    return isSigned ? static_cast<signed char>(value) : static_cast<unsigned char>(value);
  if (conversion.length == "h")
    return isSigned ? static_cast<short>(value) : static_cast<unsigned short>(value);
  return isSigned ? value : static_cast<std::intmax_t>(static_cast<unsigned int>(value));
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
/// One number by printf; the conversion was put together here, never taken from the caller.
template <typename Number>
std::string Print(const std::string& conversion, Number number) {
  const int length = std::snprintf(nullptr, 0, conversion.c_str(), number);
  if (length < 0) return {};
  std::string text(static_cast<size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), conversion.c_str(), number);
  text.pop_back();
  return text;
}
#pragma GCC diagnostic pop

std::u16string TextOfPointer(const Conversion& conversion, const void* pointer) {
  if (pointer == nullptr) return u"(null)";
  if (conversion.letter == u'@') {
    if (CFGetTypeID(pointer) == cf::kStringType) return std::u16string(cf::TextOf(pointer));
    return std::u16string(cf::TextOf(adoptCF(CFCopyDescription(pointer)).get()));
  }
  if (conversion.letter == u'S') {
    const auto* units = static_cast<const UniChar*>(pointer);
    std::u16string text;
    while (*units != 0 &&
           (conversion.precision < 0 || text.size() < static_cast<size_t>(conversion.precision))) {
      text.push_back(*units++);
    }
    return text;
  }
  const auto* bytes = static_cast<const char*>(pointer);
  // With a precision there need be no zero behind the bytes.
  const size_t length = conversion.precision < 0 ? std::char_traits<char>::length(bytes)
                                                 : strnlen(bytes, static_cast<size_t>(conversion.precision));
  return cf::FromUTF8Leniently({bytes, length});
}

std::u16string Pad(std::u16string text, const Conversion& conversion) {
  if (conversion.letter == u'@' && conversion.precision >= 0) {
    text.resize(std::min(text.size(), static_cast<size_t>(conversion.precision)));
  }
  const auto width = static_cast<size_t>(std::max(conversion.width, 0));
  if (text.size() >= width) return text;
  const bool left = conversion.flags.find('-') != std::string::npos;
  return left ? text.append(width - text.size(), u' ') : std::u16string(width - text.size(), u' ') + text;
}

std::u16string Convert(Conversion conversion, const std::vector<Argument>& arguments) {
  const auto column = [&arguments](size_t argument) {
    const auto value = std::get<std::intmax_t>(arguments[argument - 1]);
    return static_cast<int>(std::clamp<std::intmax_t>(value, -kMostColumns, kMostColumns));
  };
  if (conversion.widthArgument != 0) {
    conversion.width = column(conversion.widthArgument);
    if (conversion.width < 0) {
      conversion.flags.push_back('-');
      conversion.width = -conversion.width;
    }
  }
  if (conversion.precisionArgument != 0) conversion.precision = column(conversion.precisionArgument);

  const Argument& argument = arguments[conversion.argument - 1];
  if (const auto* pointer = std::get_if<const void*>(&argument);
      pointer != nullptr && conversion.letter != u'p') {
    return Pad(TextOfPointer(conversion, *pointer), conversion);
  }
  if (conversion.letter == u'c' || conversion.letter == u'C') {
    const auto value = std::get<std::intmax_t>(argument);
    const auto unit =
        conversion.letter == u'c' ? static_cast<unsigned char>(value) : static_cast<char16_t>(value);
    return Pad(std::u16string(1, static_cast<char16_t>(unit)), conversion);
  }
  std::string form = "%" + conversion.flags;
  if (conversion.width >= 0) form += std::to_string(conversion.width);
  if (conversion.precision >= 0) form += "." + std::to_string(conversion.precision);
  const char letter = static_cast<char>(conversion.letter);
  const std::string text = std::visit(
      [&](auto value) {
        using Value = decltype(value);
        if constexpr (std::is_same_v<Value, std::intmax_t>) {
          return Print(form + "j" + letter, Narrow(value, conversion));
        } else {
          return Print(form + letter, value);
        }
      },
      argument);
  return std::u16string(text.begin(), text.end());
}

/// Numbers look the same in every locale.
class PlainLocale {
 public:
  PlainLocale() {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    before_ = uselocale(plain);
  }
  ~PlainLocale() { uselocale(before_); }
  PlainLocale(const PlainLocale&) = delete;
  PlainLocale& operator=(const PlainLocale&) = delete;

 private:
  locale_t before_;
};

std::u16string Format(std::u16string_view format, va_list list) {
  const std::vector<Piece> pieces = FormatReader(format).Read();
  bool sound = false;
  const std::vector<Kind> kinds = KindsOf(pieces, &sound);
  if (!sound) return std::u16string(format);
  std::vector<Argument> arguments;
  arguments.reserve(kinds.size());
  va_list copy;
  va_copy(copy, list);
  for (const Kind kind : kinds) arguments.push_back(Fetch(kind, &copy));
  va_end(copy);
  const PlainLocale plain;
  std::u16string result;
  for (const Piece& piece : pieces) {
    const auto* text = std::get_if<std::u16string>(&piece);
    result += text != nullptr ? *text : Convert(std::get<Conversion>(piece), arguments);
  }
  return result;
}

}  // namespace

CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options, CFStringRef format,
                                     ...) {
  va_list arguments;
  va_start(arguments, format);
  CFStringRef result = CFStringCreateWithFormatAndArguments(allocator, options, format, arguments);
  va_end(arguments);
  return result;
}

CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef, CFDictionaryRef, CFStringRef format,
                                                 va_list arguments) {
  const auto* source = cf::Cast<__CFString>(format);
  return source == nullptr ? nullptr : cf::NewString(Format(source->text, arguments));
}

void CFStringAppendFormat(CFMutableStringRef string, CFDictionaryRef options, CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  CFStringAppendFormatAndArguments(string, options, format, arguments);
  va_end(arguments);
}

void CFStringAppendFormatAndArguments(CFMutableStringRef string, CFDictionaryRef options, CFStringRef format,
                                      va_list arguments) {
  const auto appended =
      adoptCF(CFStringCreateWithFormatAndArguments(kCFAllocatorDefault, options, format, arguments));
  CFStringAppend(string, appended.get());
}
