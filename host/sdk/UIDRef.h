#pragma once

#include "UID.h"

class IDataBase;

/// Names one object among all databases. A plain value: it keeps neither the object nor the database alive.
class UIDRef {
 public:
  constexpr UIDRef() = default;
  constexpr UIDRef(IDataBase* database, UID uid) : m_pDataBase(database), m_UID(uid) {}

  constexpr IDataBase* GetDataBase() const { return m_pDataBase; }
  constexpr UID GetUID() const { return m_UID; }
  constexpr bool IsNull() const { return m_pDataBase == nullptr && !m_UID.IsValid(); }

  /// The reference to nothing.
  static constexpr UIDRef Null() { return {}; }

  friend constexpr bool operator==(const UIDRef&, const UIDRef&) = default;

 private:
  IDataBase* m_pDataBase = nullptr;
  UID m_UID;
};
