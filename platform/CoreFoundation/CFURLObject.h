#pragma once

#include <CoreFoundation/CFURL.h>

#include <mutex>
#include <string>
#include <string_view>

#include "CoreFoundation/CFRuntime.h"
#include "Memory/RetainPtr.h"

struct __CFURL final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kURLType;

  /// `givenPath` isn't empty; a relative one needs `baseFolder`.
  __CFURL(std::string_view givenPath, std::string baseFolder, bool isFolder);

  bool Equals(const Object& other) const override;
  CFHashCode Hash() const override;
  std::string Describe(int) const override { return AbsolutePath(); }

  std::string AbsolutePath() const;
  std::string_view LastComponent() const;
  /// "file:///…"
  CFStringRef String() const;

  /// As given, without "/" at its end.
  const std::string path;
  /// "" for an absolute path.
  const std::string base;
  const bool isDirectory;

 private:
  mutable std::once_flag stringOnce_;
  mutable RetainPtr<CFStringRef> string_;
};

namespace cf {

/// Null for an empty path, or one that holds a zero.
CFURLRef NewURL(std::string_view path, bool isDirectory);

}  // namespace cf
