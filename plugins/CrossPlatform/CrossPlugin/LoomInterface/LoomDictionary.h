#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "Memory/RetainPtr.h"

/// A small property dictionary of strings, such as the values that the UI framework is started with. Main
/// thread.
class LoomDictionary {
 public:
  LoomDictionary();

  /// \return The text under `key` in UTF-8, empty when there is none or when it is no string.
  std::string GetStringForKey(CFStringRef key) const;

  /// Stores `value` under `key`; a null value or key changes nothing.
  void SetStringForKey(CFStringRef key, CFStringRef value);

  /// \return The dictionary itself, owned by this object; what is written to it is seen here.
  CFMutableDictionaryRef GetDictionaryRef() const { return m_dictionary.get(); }

 private:
  RetainPtr<CFMutableDictionaryRef> m_dictionary;
};
