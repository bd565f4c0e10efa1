#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kiln {

/// The IDs of a repeated field of a request, as long as that lives.
template <class Field>
std::span<const uint32_t> IDs(const Field& field) {
  return {field.data(), static_cast<size_t>(field.size())};
}

}  // namespace kiln
