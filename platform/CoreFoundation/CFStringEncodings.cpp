#include "CoreFoundation/CFStringEncodings.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <array>
#include <bit>
#include <limits>
#include <memory>
#include <unordered_map>

namespace cf {

namespace {

constexpr bool kBigEndianMachine = std::endian::native == std::endian::big;
constexpr UChar32 kByteOrderMark = 0xFEFF;

/// An encoding of one byte a character, as ICU has it.
class ByteTable {
 public:
  explicit ByteTable(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(name, &status), &ucnv_close);
    for (size_t byte = 0; byte < characters_.size(); ++byte) {
      const char source = static_cast<char>(byte);
      UErrorCode result = status;
      char16_t character = 0xFFFD;
      ucnv_toUChars(converter.get(), &character, 1, &source, 1, &result);
      characters_[byte] = U_FAILURE(result) ? u'\uFFFD' : character;
      bytes_.emplace(characters_[byte], source);
    }
    bytes_.erase(u'\uFFFD');
  }

  char16_t Character(char byte) const { return characters_[static_cast<unsigned char>(byte)]; }
  std::optional<char> Byte(UChar32 character) const {
    const auto found = bytes_.find(character);
    if (found == bytes_.end()) return std::nullopt;
    return found->second;
  }

 private:
  std::array<char16_t, 256> characters_{};
  std::unordered_map<UChar32, char> bytes_;
};

/// Null for encodings that aren't by table.
const ByteTable* TableOf(CFStringEncoding encoding) {
  static const ByteTable* const macRoman = new ByteTable("macintosh");
  static const ByteTable* const windowsLatin1 = new ByteTable("windows-1252");
  if (encoding == kCFStringEncodingMacRoman) return macRoman;
  if (encoding == kCFStringEncodingWindowsLatin1) return windowsLatin1;
  return nullptr;
}

struct WideForm {
  size_t unitSize;  // 2 or 4
  bool bigEndian;
  bool byMark;  // the byte order may be told by a mark
};

std::optional<WideForm> WideFormOf(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingUTF16:
      return WideForm{2, kBigEndianMachine, true};
    case kCFStringEncodingUTF16BE:
      return WideForm{2, true, false};
    case kCFStringEncodingUTF16LE:
      return WideForm{2, false, false};
    case kCFStringEncodingUTF32:
      return WideForm{4, kBigEndianMachine, true};
    case kCFStringEncodingUTF32BE:
      return WideForm{4, true, false};
    case kCFStringEncodingUTF32LE:
      return WideForm{4, false, false};
    default:
      return std::nullopt;
  }
}

UInt32 ReadUnit(std::string_view bytes, size_t offset, const WideForm& form) {
  UInt32 unit = 0;
  for (size_t i = 0; i < form.unitSize; ++i) {
    const size_t place = form.bigEndian ? i : form.unitSize - 1 - i;
    unit = unit << 8 | static_cast<unsigned char>(bytes[offset + place]);
  }
  return unit;
}

void AppendUnit(UInt32 unit, const WideForm& form, std::string* bytes) {
  for (size_t i = 0; i < form.unitSize; ++i) {
    const size_t place = form.bigEndian ? form.unitSize - 1 - i : i;
    bytes->push_back(static_cast<char>(unit >> (8 * place)));
  }
}

void AppendCharacter(UChar32 character, std::u16string* text) {
  if (character > 0xFFFF) text->push_back(U16_LEAD(character));
  text->push_back(character > 0xFFFF ? U16_TRAIL(character) : static_cast<char16_t>(character));
}

std::optional<std::u16string> DecodeWide(std::string_view bytes, WideForm form, bool isExternal) {
  if (bytes.size() % form.unitSize != 0) return std::nullopt;
  size_t offset = 0;
  if (!bytes.empty() && (form.byMark || isExternal)) {
    WideForm swapped = form;
    swapped.bigEndian = !form.bigEndian;
    if (ReadUnit(bytes, 0, form) == kByteOrderMark) {
      offset = form.unitSize;
    } else if (form.byMark && ReadUnit(bytes, 0, swapped) == kByteOrderMark) {
      offset = form.unitSize;
      form = swapped;
    }
  }
  std::u16string text;
  text.reserve((bytes.size() - offset) / form.unitSize);
  for (; offset < bytes.size(); offset += form.unitSize) {
    const UInt32 unit = ReadUnit(bytes, offset, form);
    if (form.unitSize == 4 && (unit > 0x10FFFF || U_IS_SURROGATE(unit))) return std::nullopt;
    AppendCharacter(static_cast<UChar32>(unit), &text);
  }
  return text;
}

std::optional<std::u16string> DecodeUTF8(std::string_view bytes) {
  if (bytes.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) return std::nullopt;
  std::u16string text(bytes.size(), u'\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(text.data(), static_cast<int32_t>(text.size()), &length, bytes.data(),
                static_cast<int32_t>(bytes.size()), &status);
  if (U_FAILURE(status)) return std::nullopt;
  text.resize(static_cast<size_t>(length));
  return text;
}

/// The bytes of one character; false when the encoding can't say it.
bool EncodeCharacter(UChar32 character, CFStringEncoding encoding, const std::optional<WideForm>& wide,
                     const ByteTable* table, std::string* bytes) {
  if (wide && wide->unitSize == 2) {
    if (character > 0xFFFF) AppendUnit(U16_LEAD(character), *wide, bytes);
    AppendUnit(character > 0xFFFF ? U16_TRAIL(character) : static_cast<UInt32>(character), *wide, bytes);
    return true;
  }
  if (U_IS_SURROGATE(character)) return false;
  if (wide) {
    AppendUnit(static_cast<UInt32>(character), *wide, bytes);
    return true;
  }
  if (encoding == kCFStringEncodingUTF8) {
    char form[U8_MAX_LENGTH];
    size_t length = 0;
    U8_APPEND_UNSAFE(form, length, character);
    bytes->append(form, length);
    return true;
  }
  if (table != nullptr) {
    const std::optional<char> byte = table->Byte(character);
    if (byte) bytes->push_back(*byte);
    return byte.has_value();
  }
  if (character > (encoding == kCFStringEncodingASCII ? 0x7F : 0xFF)) return false;
  bytes->push_back(static_cast<char>(character));
  return true;
}

}  // namespace

bool IsKnownEncoding(CFStringEncoding encoding) {
  return MostBytesPerUnit(encoding) != 0;
}

size_t MostBytesPerUnit(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingUTF8:
      return 3;
    case kCFStringEncodingASCII:
    case kCFStringEncodingISOLatin1:
    case kCFStringEncodingMacRoman:
    case kCFStringEncodingWindowsLatin1:
      return 1;
    default:
      const std::optional<WideForm> wide = WideFormOf(encoding);
      return wide ? wide->unitSize : 0;
  }
}

std::optional<std::u16string> Decode(std::string_view bytes, CFStringEncoding encoding, bool isExternal) {
  if (encoding == kCFStringEncodingUTF8) {
    if (isExternal && bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    return DecodeUTF8(bytes);
  }
  if (const std::optional<WideForm> wide = WideFormOf(encoding)) return DecodeWide(bytes, *wide, isExternal);
  if (!IsKnownEncoding(encoding)) return std::nullopt;
  const ByteTable* table = TableOf(encoding);
  std::u16string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    if (encoding == kCFStringEncodingASCII && (byte & 0x80) != 0) return std::nullopt;
    const char16_t character = table != nullptr ? table->Character(byte) : static_cast<unsigned char>(byte);
    if (character == u'\uFFFD') return std::nullopt;
    text.push_back(character);
  }
  return text;
}

size_t Encode(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte, bool isExternal,
              size_t limit, std::string* bytes) {
  const std::optional<WideForm> wide = WideFormOf(encoding);
  if (!IsKnownEncoding(encoding)) return 0;
  const ByteTable* table = TableOf(encoding);
  const size_t start = bytes->size();
  std::string form;
  if (wide && wide->byMark && isExternal) {
    if (limit < wide->unitSize) return 0;
    AppendUnit(kByteOrderMark, *wide, bytes);
  }
  size_t done = 0;
  while (done < text.size()) {
    size_t next = done;
    UChar32 character = 0;
    U16_NEXT(text.data(), next, text.size(), character);
    form.clear();
    if (!EncodeCharacter(character, encoding, wide, table, &form)) {
      if (lossByte == 0) break;
      EncodeCharacter(lossByte, encoding, wide, nullptr, &form);
    }
    if (form.size() > limit - (bytes->size() - start)) break;
    bytes->append(form);
    done = next;
  }
  return done;
}

std::optional<std::string> EncodeWhole(std::u16string_view text, CFStringEncoding encoding) {
  std::string bytes;
  bytes.reserve(text.size());
  if (Encode(text, encoding, 0, false, std::numeric_limits<size_t>::max(), &bytes) != text.size())
    return std::nullopt;
  if (!IsKnownEncoding(encoding)) return std::nullopt;
  return bytes;
}

}  // namespace cf
