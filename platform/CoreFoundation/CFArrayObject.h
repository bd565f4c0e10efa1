#pragma once

#include <CoreFoundation/CFArray.h>

#include <vector>

#include "CoreFoundation/CFContainer.h"
#include "CoreFoundation/CFRuntime.h"

struct __CFArray final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kArrayType;

  __CFArray(const CFArrayCallBacks* valueCallBacks, bool isMutable)
      : Object(kType),
        callBacks(valueCallBacks == nullptr ? CFArrayCallBacks{} : *valueCallBacks),
        mutability(isMutable) {}
  ~__CFArray() override {
    for (const void* value : values) cf::LetGo(callBacks, value);
  }

  bool Equals(const Object& other) const override;
  CFHashCode Hash() const override { return values.size(); }
  bool IsMutable() const override { return mutability; }
  std::string Describe(int depth) const override;

  const CFArrayCallBacks callBacks;
  const bool mutability;
  std::vector<const void*> values;
};
