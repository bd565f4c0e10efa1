#pragma once

#include <string>
#include <string_view>

/// The text with U+FFFD in place of every byte sequence that isn't UTF-8.
std::string ValidUtf8(std::string_view text);

/// The same, with control characters replaced too, so that a name from a file can't steer a terminal.
std::string PrintableText(std::string_view text);
