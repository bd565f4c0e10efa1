#pragma once

#include <CoreFoundation/CFString.h>

#include <optional>
#include <string>
#include <string_view>

/// Bytes of an encoding to UTF-16 and back. For the sources of this folder only.
namespace cf {

bool IsKnownEncoding(CFStringEncoding encoding);

/// The most bytes that one UTF-16 unit takes; 0 for an unknown encoding.
size_t MostBytesPerUnit(CFStringEncoding encoding);

/// Nothing when a byte isn't valid. With `isExternal` a byte order mark in front is skipped in every encoding
/// of Unicode, without only in those that need it to know their byte order.
std::optional<std::u16string> Decode(std::string_view bytes, CFStringEncoding encoding, bool isExternal);

/// Appends what can be said in at most `limit` bytes, and returns how many units that was.
///
/// \param lossByte  Stands for each character that can't be said; with 0 it ends there.
size_t Encode(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte, bool isExternal,
              size_t limit, std::string* bytes);

/// The whole text; nothing when some of it can't be said.
std::optional<std::string> EncodeWhole(std::u16string_view text, CFStringEncoding encoding);

}  // namespace cf
