#pragma once

#include <utility>

#include "IDataBase.h"
#include "IPMUnknown.h"
#include "UIDRef.h"

/// Says that the interface wanted is T's own, T::kDefaultIID.
struct UseDefaultIID {};

/// Holds one reference to an interface, or nothing.
template <class T>
class InterfacePtr {
 public:
  InterfacePtr() = default;

  /// Takes over the reference that a Query... or Create... operation gave.
  explicit InterfacePtr(T* owned) : m_pInterface(owned) {}

  /// Asks an object for the interface. Null in, null out.
  InterfacePtr(IPMUnknown* object, UseDefaultIID) : InterfacePtr(object, T::kDefaultIID) {}
  InterfacePtr(IPMUnknown* object, PMIID interfaceID)
      : m_pInterface(object == nullptr ? nullptr : static_cast<T*>(object->QueryInterface(interfaceID))) {}

  template <class U>
  InterfacePtr(const InterfacePtr<U>& object, UseDefaultIID) : InterfacePtr(object.get(), UseDefaultIID()) {}

  /// Asks an object of a database for the interface. A null reference gives null.
  InterfacePtr(const UIDRef& object, UseDefaultIID)
      : InterfacePtr(object.GetDataBase(), object.GetUID(), UseDefaultIID()) {}
  InterfacePtr(IDataBase* database, UID uid, UseDefaultIID)
      : m_pInterface(database == nullptr ? nullptr
                                         : static_cast<T*>(database->QueryInstance(uid, T::kDefaultIID))) {}

  InterfacePtr(const InterfacePtr& other) : m_pInterface(other.m_pInterface) {
    if (m_pInterface != nullptr) {
      m_pInterface->AddRef();
    }
  }
  InterfacePtr(InterfacePtr&& other) noexcept : m_pInterface(std::exchange(other.m_pInterface, nullptr)) {}
  InterfacePtr& operator=(InterfacePtr other) noexcept {
    std::swap(m_pInterface, other.m_pInterface);
    return *this;
  }
  ~InterfacePtr() {
    if (m_pInterface != nullptr) {
      m_pInterface->Release();
    }
  }

  /// The interface, still held by this; null when there is none.
  T* get() const { return m_pInterface; }
  T* operator->() const { return m_pInterface; }
  explicit operator bool() const { return m_pInterface != nullptr; }

  /// Hands the reference to the caller and holds nothing afterwards.
  [[nodiscard]] T* forget() { return std::exchange(m_pInterface, nullptr); }

 private:
  T* m_pInterface = nullptr;
};
