#pragma once

#include "BaseType.h"

/// Names one object within its database; 0 names none.
class UID {
 public:
  constexpr UID() = default;
  constexpr explicit UID(uint32 value) : m_nValue(value) {}

  constexpr uint32 Get() const { return m_nValue; }
  constexpr bool IsValid() const { return m_nValue != 0; }

  friend constexpr bool operator==(UID, UID) = default;
  friend constexpr bool operator<(UID a, UID b) { return a.m_nValue < b.m_nValue; }

 private:
  uint32 m_nValue = 0;
};

constexpr UID kInvalidUID{};
