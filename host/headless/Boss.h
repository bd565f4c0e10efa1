#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "IPMUnknown.h"
#include "InterfaceFactory.h"

namespace headless {

/// An object of the host: a set of interfaces that share one count of references. Begins with one reference,
/// the maker's, and goes with the last one, its interfaces in the reverse order of their coming.
class Boss final : public IPMUnknown {
 public:
  Boss() = default;
  Boss(const Boss&) = delete;
  Boss& operator=(const Boss&) = delete;

  void AddRef() override { ++m_nReferences; }
  void Release() override;
  IPMUnknown* QueryInterface(PMIID interfaceID) override;

  /// \return false when there is one of that number already; nothing changes then.
  bool AddInterface(PMIID interfaceID, std::unique_ptr<IPMUnknown> implementation);

  /// Makes the interface from its factory and adds it. \return as above.
  bool AddInterface(const InterfaceFactory& factory);

  /// Deletes the interface; nobody may hold it any more.
  void RemoveInterface(PMIID interfaceID);

  /// Makes an interface of the host's own and adds it under T's number. \return it, the boss's.
  template <class T, class... Arguments>
  T* Emplace(Arguments&&... arguments) {
    auto implementation = std::make_unique<T>(this, std::forward<Arguments>(arguments)...);
    T* made = implementation.get();
    return AddInterface(T::kDefaultIID, std::move(implementation)) ? made : nullptr;
  }

 private:
  ~Boss() override;
  IPMUnknown* Find(PMIID interfaceID) const;

  int32 m_nReferences = 1;
  std::vector<std::pair<PMIID, std::unique_ptr<IPMUnknown>>> m_vInterfaces;
};

}  // namespace headless
