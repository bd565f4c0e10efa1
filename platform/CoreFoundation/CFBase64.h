#pragma once

#include <CoreFoundation/CFBase.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// RFC 4648's base 64 as property lists hold it. For the sources of this folder only.
namespace cf {

std::string EncodeBase64(std::string_view bytes);

/// White space anywhere is skipped; anything else outside the alphabet, or a wrong length, gives nothing.
std::optional<std::vector<UInt8>> DecodeBase64(std::string_view text);

}  // namespace cf
