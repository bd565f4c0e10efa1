#pragma once

#include "IPMUnknown.h"

/// The usual base of an implementation of the interface T.
///
/// An implementation that belongs to a boss has no life of its own: its references are the boss's, and so are
/// its other interfaces. The boss owns and deletes it. Without a boss it counts for itself, begins with one
/// reference and deletes itself at the last release.
template <class T>
class CPMUnknown : public T {
 public:
  /// \param boss  The object that this is an interface of, or null. Not retained.
  explicit CPMUnknown(IPMUnknown* boss) : m_pBoss(boss) {}
  CPMUnknown(const CPMUnknown&) = delete;
  CPMUnknown& operator=(const CPMUnknown&) = delete;

  void AddRef() override {
    if (m_pBoss != nullptr) {
      m_pBoss->AddRef();
    } else {
      ++m_nReferences;
    }
  }

  void Release() override {
    if (m_pBoss != nullptr) {
      m_pBoss->Release();
    } else if (--m_nReferences == 0) {
      delete this;
    }
  }

  IPMUnknown* QueryInterface(PMIID interfaceID) override {
    if (m_pBoss != nullptr) {
      return m_pBoss->QueryInterface(interfaceID);
    }
    if (interfaceID != T::kDefaultIID && interfaceID != IID_IPMUNKNOWN) {
      return nullptr;
    }
    AddRef();
    return this;
  }

 private:
  IPMUnknown* m_pBoss;
  int32 m_nReferences = 1;
};
