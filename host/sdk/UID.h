#pragma once

#include <compare>

#include "BaseType.h"

/// Names one object within its database; 0 names none.
class UID {
 public:
  constexpr UID() = default;
  constexpr explicit UID(uint32 value) : m_nValue(value) {}

  constexpr uint32 Get() const { return m_nValue; }
  constexpr bool IsValid() const { return m_nValue != 0; }

  friend constexpr auto operator<=>(const UID&, const UID&) = default;

 private:
  uint32 m_nValue = 0;
};

constexpr UID kInvalidUID{};
