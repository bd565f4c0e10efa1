#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "protocol/Kiln.pb.h"

/// What keeps a client, by mistake or not, from having Kiln use up the memory or be busy for minutes.
namespace kiln {

/// Entries of one list of a request; no library has more fonts.
inline constexpr size_t kMostEntries = 100000;

/// Whether a message that wasn't parsed yet has more texts or records than that: an empty one takes two bytes
/// of a frame, and a hundred of memory. Bytes that are no message don't have too many.
bool HasTooManyEntries(std::string_view message);

/// Whether the lists of IDs are no longer than that, too.
bool IsWithinLimits(const wire::ClientMessage& message);

/// Whether a text can be the absolute path of a file.
bool IsPath(const std::string& text);

}  // namespace kiln
