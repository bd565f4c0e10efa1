#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Memory/RetainPtr.h"
#include "Preferences.h"
#include "Progress.h"
#include "Texts.h"

/// What stands behind the entries: the start-up values, the texts and the preferences of the process.
///
/// Life: made by the first entry that is called; started by Initialize(), which may come again. Thread: main.
class Framework {
 public:
  static Framework& Get();
  /// For tests: lets go of everything, so that the next Get() starts afresh.
  static void Reset();

  Framework();
  Framework(const Framework&) = delete;
  Framework& operator=(const Framework&) = delete;

  /// \return 0, or 1 for a null dictionary.
  int Initialize(CFMutableDictionaryRef startup);
  void SetHostDetails(CFDictionaryRef details);
  void SetIsOnline(bool online) { m_isOnline = online; }

  std::string Sentence(const std::string& key) const;
  /// As above; "" for null.
  std::string Sentence(CFStringRef key) const;
  /// The framework's own string, as Get functions give it.
  CFStringRef GetHostAppDisplayName();
  /// A text preference as Get functions give it; null for none.
  CFStringRef GetStringPreference(const std::string& key);

  Preferences& GetPreferences() { return m_preferences; }
  Progress& GetProgress() { return m_progress; }

  void ShowAboutBox() const;
  void ShowPreferences();

 private:
  std::string StartupText(CFStringRef key) const;
  std::string HostAppDisplayName() const;
  std::vector<std::string> PreferenceLines();

  RetainPtr<CFMutableDictionaryRef> m_startup;
  std::string m_hostAppDisplayName;  // from the host details; empty when they don't tell
  RetainPtr<CFStringRef> m_givenHostName;
  std::map<std::string, RetainPtr<CFStringRef>> m_givenTexts;
  Texts m_texts;
  std::set<std::string> m_reported;
  Preferences m_preferences;
  Progress m_progress;
  std::optional<bool> m_isOnline;
};
