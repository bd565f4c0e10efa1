#pragma once

#include "K2Vector.h"
#include "UIDRef.h"

/// Some objects of one database, in order; what a command works on.
class UIDList {
 public:
  UIDList() = default;
  explicit UIDList(IDataBase* database) : m_pDataBase(database) {}
  explicit UIDList(const UIDRef& only) : m_pDataBase(only.GetDataBase()), m_vUIDs{only.GetUID()} {}

  void Append(UID uid) { m_vUIDs.push_back(uid); }
  int32 Length() const { return static_cast<int32>(m_vUIDs.size()); }
  /// \param index  From 0 to Length() - 1.
  UIDRef GetRef(int32 index) const { return {m_pDataBase, m_vUIDs[static_cast<std::size_t>(index)]}; }
  IDataBase* GetDataBase() const { return m_pDataBase; }

 private:
  IDataBase* m_pDataBase = nullptr;
  K2Vector<UID> m_vUIDs;
};
