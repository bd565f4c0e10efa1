#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "PreferenceValue.h"
#include "PreferencesFile.h"

/// The user's preferences: a file, and overrides for this process.
///
/// The file is read when a value is first asked for, and again whenever it has changed. A change is stored
/// before the call returns; one that can't be stored is reported and holds for this process. An override
/// always wins, also over a later change, and never reaches the file.
///
/// Thread: one.
class Preferences {
 public:
  /// \param overrides  "Key=value" with ";" between them; what has no "=" or no key is reported and left out.
  Preferences(std::string path, std::string_view overrides, const PreferencesFile::Reporter& report);

  /// Where they are stored.
  const std::string& GetPath() const { return m_file.GetPath(); }

  /// Nothing for a key that isn't set.
  std::optional<PreferenceValue> Get(const std::string& key);
  bool IsOverridden(const std::string& key) const { return m_overrides.contains(key); }
  /// Nothing removes the key.
  void Set(const std::string& key, const std::optional<PreferenceValue>& value);

  /// Whether the user's settings have been stored. The selected workgroup alone doesn't count: it is stored
  /// while a plug-in connects, before the plug-in asks whether this is its first start.
  bool Exist();

 private:
  using Values = std::map<std::string, PreferenceValue>;
  void ReadOverrides(std::string_view overrides, const PreferencesFile::Reporter& report);
  void Refresh();

  PreferencesFile m_file;
  Values m_overrides;
  std::map<std::string, std::optional<PreferenceValue>> m_unstored;
  std::optional<PreferencesFile::Stamp> m_stamp;
  Values m_values;
  bool m_exist = false;
};
