#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Activation/State/HornbeamGlobals.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFVector.h"

/// The UI framework in memory: a table of what the plug-in calls, whose user answers as the public members
/// say. As long as it exists, the shared LoomInterface stands on it.
///
/// A box is recorded as "header|message|buttons", with "-" for no header.
class FakeLoom {
 public:
  FakeLoom() : FakeLoom(Table()) {}

  /// On a changed table, for tests that take an entry away.
  explicit FakeLoom(const LoomFunctions& table) {
    sCurrent = this;
    before_ = HornbeamGlobals::ReplaceSharedLoomInterfaceForTesting(
        std::make_unique<LoomInterface>(table, CFSTR("InDesign"), CFSTR("15.1.0"), CFSTR("15.1.0")));
  }
  ~FakeLoom() {
    HornbeamGlobals::ReplaceSharedLoomInterfaceForTesting(std::move(before_));
    sCurrent = nullptr;
  }
  FakeLoom(const FakeLoom&) = delete;
  FakeLoom& operator=(const FakeLoom&) = delete;

  /// The interface on this framework.
  LoomInterface& Loom() { return *HornbeamGlobals::GetSharedLoomInterface(); }

  void SetPreference(const std::string& key, long value) { preferences[key] = value; }
  long GetPreference(const std::string& key) const {
    const auto found = preferences.find(key);
    return found == preferences.end() ? 0 : found->second;
  }

  /// The message keys of the boxes, in order.
  std::vector<std::string> Messages() const {
    std::vector<std::string> messages;
    for (const std::string& box : boxes) {
      const size_t start = box.find('|') + 1;
      messages.push_back(box.substr(start, box.rfind('|') - start));
    }
    return messages;
  }

  static LoomFunctions Table() {
    LoomFunctions table;
    table.pfLoomIsVersionCompatible = [](const char* version) { return std::string(version) == "1.0"; };
    table.pfLoomInitializeFramework = [](CFMutableDictionaryRef) { return 0; };
    table.pfLoomLocalizedString = [](CFStringRef key) {
      const auto found = sCurrent->sentences.find(ToStdString(key));
      return found == sCurrent->sentences.end() ? CFStringCreateCopy(nullptr, key)
                                                : ToCFString(found->second).leakRef();
    };
    table.pfLoomGetHostAppDisplayName = [] { return CFSTR("Fake Host"); };
    table.pfLoomGetPreferenceForKey = [](CFStringRef key) {
      return sCurrent->GetPreference(ToStdString(key)) != 0;
    };
    table.pfLoomSetPreferenceForKey = [](CFStringRef key, bool value) {
      sCurrent->preferences[ToStdString(key)] = value ? 1 : 0;
    };
    table.pfLoomGetLongPreferenceForKey = [](CFStringRef key) {
      return sCurrent->GetPreference(ToStdString(key));
    };
    table.pfLoomSetLongPreferenceForKey = [](CFStringRef key, long value) {
      sCurrent->preferences[ToStdString(key)] = value;
    };
    table.pfLoomDoPreferencesExist = [] { return !sCurrent->preferences.empty(); };
    table.pfLoomShowMessageBox = &ShowMessageBox;
    table.pfLoomAskForOneString = &AskForOneString;
    table.pfLoomShowResolveFonts = [](CFArrayRef fonts) {
      if (sCurrent->resolve) sCurrent->resolve(fonts);
    };
    table.pfLoomSetIsOnline = [](bool online) { sCurrent->online = online; };
    return table;
  }

  // What the user does.
  std::deque<int> answers;  ///< Buttons for the next boxes with more than one; then alwaysAnswer.
  int alwaysAnswer = 2;
  bool cancelsText = false;                      ///< Else takes what is proposed.
  std::function<void(CFArrayRef)> resolve;       ///< Writes the choices into the records.
  std::function<void()> duringBox;               ///< Runs while a box is up.
  std::map<std::string, std::string> sentences;  ///< By key; else the key itself.

  // What was shown and stored.
  std::vector<std::string> boxes;
  std::vector<std::string> questions;  ///< "title|prompt|proposed"
  std::map<std::string, long> preferences;
  bool online = true;

 private:
  static int ShowMessageBox(CFStringRef header, CFStringRef message, int buttons) {
    sCurrent->boxes.push_back((header == nullptr ? "-" : ToStdString(header)) + "|" + ToStdString(message) +
                              "|" + std::to_string(buttons));
    if (sCurrent->duringBox) sCurrent->duringBox();
    if (buttons < 2) return 1;
    if (sCurrent->answers.empty()) return sCurrent->alwaysAnswer;
    const int answer = sCurrent->answers.front();
    sCurrent->answers.pop_front();
    return answer;
  }

  static bool AskForOneString(CFStringRef title, CFStringRef prompt, CFStringRef proposed, CFStringRef* out) {
    sCurrent->questions.push_back(ToStdString(title) + "|" + ToStdString(prompt) + "|" +
                                  ToStdString(proposed));
    if (sCurrent->cancelsText) return false;
    *out = CFStringCreateCopy(nullptr, proposed);
    return true;
  }

  std::unique_ptr<LoomInterface> before_;
  static inline FakeLoom* sCurrent = nullptr;
};
