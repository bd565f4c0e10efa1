#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

/// How the format writes texts and properties.
namespace idml {

/// Takes away the "$ID/" that marks a text as translatable.
std::string_view WithoutIdPrefix(std::string_view text);

/// Whether a text can stand as a name: valid UTF-8 (RFC 3629) of 1 to limits::kMaximumNameLength bytes
/// without control characters.
bool IsName(std::string_view text);

/// A property of an element: its attribute of that name or else the child of that name in its Properties
/// element, without "$ID/".
///
/// \return nothing when it isn't there, is empty, or is the enumeration value "Nothing".
std::optional<std::string> Property(const pugi::xml_node& element, const char* name);

/// A property that must be a name (IsName); anything else counts as not there.
std::optional<std::string> NameProperty(const pugi::xml_node& element, const char* name);

}  // namespace idml
