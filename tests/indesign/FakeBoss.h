#pragma once

#include <gtest/gtest.h>

#include <map>

#include "IPMUnknown.h"

/// An object of a host in memory: interfaces by number, one count of references. It is owned by the test, and
/// complains when someone still holds it at its end.
class FakeBoss : public IPMUnknown {
 public:
  FakeBoss() = default;
  FakeBoss(const FakeBoss&) = delete;
  FakeBoss& operator=(const FakeBoss&) = delete;
  ~FakeBoss() override { EXPECT_EQ(references, 0) << "references left over"; }

  void AddRef() override { ++references; }
  void Release() override { --references; }
  IPMUnknown* QueryInterface(PMIID interfaceID) override {
    const auto found = interfaces.find(interfaceID);
    if (found == interfaces.end()) return nullptr;
    AddRef();
    return found->second;
  }

  /// Offers an interface, which belongs to whoever made it.
  template <class T>
  void Offer(T& implementation) {
    interfaces[T::kDefaultIID] = &implementation;
  }

  std::map<PMIID, IPMUnknown*> interfaces;
  int references = 0;
};
