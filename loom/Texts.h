#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "Memory/RetainPtr.h"

/// The framework's sentences, from `Localizable.strings` of its bundle.
///
/// A sentence speaks of "[FONT_MANAGER]", "[FONT_MANAGER_MODIFIER]" and "[host app]", which are replaced by
/// the names of the edition and of the host. Thread: one.
class Texts {
 public:
  /// The names to speak of: "FontManager" is the manager's bundle name, a key of the table; empty means that
  /// it isn't known yet.
  struct Names {
    std::string fontManager;
    std::string hostApp;
  };

  /// Without a bundle every key is its own sentence.
  explicit Texts(RetainPtr<CFBundleRef> bundle);

  /// The sentence for a key, or the key itself when the table doesn't have it, with the names filled in.
  std::string Sentence(const std::string& key, const Names& names) const;

 private:
  std::string Lookup(const std::string& key) const;

  RetainPtr<CFBundleRef> m_bundle;
};
