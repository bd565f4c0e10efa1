#pragma once

#include <CoreFoundation/CFDictionary.h>

#include "CoreFoundation/CFContainer.h"
#include "CoreFoundation/CFDictionaryEntries.h"
#include "CoreFoundation/CFRuntime.h"

struct __CFDictionary final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kDictionaryType;

  struct KeyHash {
    const CFDictionaryKeyCallBacks* callBacks;
    size_t operator()(const void* key) const { return cf::HashOf(*callBacks, key); }
  };
  struct KeyEqual {
    const CFDictionaryKeyCallBacks* callBacks;
    bool operator()(const void* a, const void* b) const { return cf::AreEqual(*callBacks, a, b); }
  };

  __CFDictionary(const CFDictionaryKeyCallBacks* keys, const CFDictionaryValueCallBacks* values,
                 bool isMutable)
      : Object(kType),
        keyCallBacks(keys == nullptr ? CFDictionaryKeyCallBacks{} : *keys),
        valueCallBacks(values == nullptr ? CFDictionaryValueCallBacks{} : *values),
        mutability(isMutable),
        entries(KeyHash{&keyCallBacks}, KeyEqual{&keyCallBacks}) {}
  ~__CFDictionary() override;

  bool Equals(const Object& other) const override;
  CFHashCode Hash() const override { return entries.size(); }
  bool IsMutable() const override { return mutability; }
  std::string Describe(int depth) const override;

  enum class When { kAbsent, kPresent, kAlways };
  /// False when the key or value is refused.
  bool Put(const void* key, const void* value, When when);

  const CFDictionaryKeyCallBacks keyCallBacks;
  const CFDictionaryValueCallBacks valueCallBacks;
  const bool mutability;
  CFDictionaryEntries<KeyHash, KeyEqual> entries;
};
