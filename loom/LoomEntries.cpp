#include "LoomEntries.h"

#include <cstring>
#include <exception>
#include <optional>

#include "Dialogs.h"
#include "Framework.h"
#include "Memory/CFVector.h"
#include "ResolveFonts.h"

namespace {

constexpr int kFirstButton = 1;
constexpr int kSecondButton = 2;

// Nothing is thrown at a caller that may be built by another compiler: an operation that fails so gives its
// neutral result.
template <typename Result, typename Operation>
Result Guarded(Result neutral, Operation operation) noexcept {
  try {
    return operation(Framework::Get());
  } catch (...) {
    return neutral;
  }
}

template <typename Operation>
void Guarded(Operation operation) noexcept {
  try {
    operation(Framework::Get());
  } catch (...) {  // as above
  }
}

std::optional<PreferenceValue> GetPreference(Framework& framework, CFStringRef key) {
  return key != nullptr ? framework.GetPreferences().Get(ToStdString(key)) : std::nullopt;
}

void SetPreference(Framework& framework, CFStringRef key, const std::optional<PreferenceValue>& value) {
  if (key != nullptr) framework.GetPreferences().Set(ToStdString(key), value);
}

int AskForButton(Framework& framework, CFStringRef headerKey, CFStringRef messageKey) {
  return Dialogs::Ask(framework.Sentence(headerKey), framework.Sentence(messageKey)) ? kFirstButton
                                                                                     : kSecondButton;
}

void NoticeWithFonts(Framework& framework, const char* headerKey, const char* messageKey, CFArrayRef fonts) {
  const std::vector<std::string> names = FontNames(fonts);
  if (names.empty()) return;
  Dialogs::NoticeWithNames(framework.Sentence(headerKey), framework.Sentence(messageKey), names);
}

}  // namespace

bool LoomIsVersionCompatible(const char* version) {
  return version != nullptr && std::strcmp(version, "1.0") == 0;
}

int LoomInitializeFramework(CFMutableDictionaryRef startup) {
  return Guarded(1, [&](Framework& framework) { return framework.Initialize(startup); });
}

CFStringRef LoomLocalizedString(CFStringRef key) {
  return Guarded(CFStringRef(nullptr), [&](Framework& framework) -> CFStringRef {
    return key != nullptr ? ToCFString(framework.Sentence(key)).leakRef() : nullptr;
  });
}

CFStringRef LoomGetHostAppDisplayName(void) {
  return Guarded(CFStringRef(nullptr),
                 [](Framework& framework) { return framework.GetHostAppDisplayName(); });
}

bool LoomGetPreferenceForKey(CFStringRef key) {
  return Guarded(false, [&](Framework& framework) {
    const auto value = GetPreference(framework, key);
    return value && value->AsBool();
  });
}

void LoomSetPreferenceForKey(CFStringRef key, bool value) {
  Guarded([&](Framework& framework) { SetPreference(framework, key, PreferenceValue(value)); });
}

long LoomGetLongPreferenceForKey(CFStringRef key) {
  return Guarded(0L, [&](Framework& framework) {
    const auto value = GetPreference(framework, key);
    return value ? value->AsLong() : 0L;
  });
}

void LoomSetLongPreferenceForKey(CFStringRef key, long value) {
  Guarded([&](Framework& framework) { SetPreference(framework, key, PreferenceValue(value)); });
}

CFStringRef LoomGetStringPreferenceForKey(CFStringRef key) {
  return Guarded(CFStringRef(nullptr), [&](Framework& framework) -> CFStringRef {
    return key != nullptr ? framework.GetStringPreference(ToStdString(key)) : nullptr;
  });
}

void LoomSetStringPreferenceForKey(CFStringRef key, CFStringRef value) {
  Guarded([&](Framework& framework) {
    SetPreference(framework, key,
                  value != nullptr ? std::optional(PreferenceValue(ToStdString(value))) : std::nullopt);
  });
}

bool LoomDoPreferencesExist(void) {
  return Guarded(false, [](Framework& framework) { return framework.GetPreferences().Exist(); });
}

void LoomShowAboutBox(void) {
  Guarded([](Framework& framework) { framework.ShowAboutBox(); });
}

int LoomShowMessageBox(CFStringRef headerKey, CFStringRef messageKey, int buttons) {
  const bool isQuestion = buttons > 1;
  return Guarded(isQuestion ? kSecondButton : kFirstButton, [&](Framework& framework) {
    if (isQuestion) return AskForButton(framework, headerKey, messageKey);
    Dialogs::Notice(framework.Sentence(headerKey), framework.Sentence(messageKey));
    return kFirstButton;
  });
}

bool LoomAskForOneString(CFStringRef title, CFStringRef prompt, CFStringRef proposed,
                         CFStringRef* outString) {
  if (outString == nullptr) return false;
  return Guarded(false, [&](Framework& framework) {
    const auto text =
        Dialogs::AskForText(framework.Sentence(title), framework.Sentence(prompt), ToStdString(proposed));
    RetainPtr<CFStringRef> string = text ? ToCFString(*text) : nullptr;
    if (!string) return false;
    *outString = string.leakRef();
    return true;
  });
}

void LoomShowPreferences(void) {
  Guarded([](Framework& framework) { framework.ShowPreferences(); });
}

void LoomShowResolveFonts(CFArrayRef problemFonts) {
  Guarded([&](Framework& framework) {
    ShowResolveFonts(problemFonts, framework.Sentence("ResolveFontTitle"),
                     framework.Sentence("ResolveFontPrompt"), framework.Sentence("ResolveFontsUnanswered"));
  });
}

void LoomShowRestrictedFonts(CFArrayRef fonts) {
  Guarded([&](Framework& framework) {
    NoticeWithFonts(framework, "RestrictedFontsHeader", "RestrictedFontsMessage", fonts);
  });
}

int LoomShowCommandBox(CFStringRef headerKey, CFStringRef messageKey) {
  return Guarded(kSecondButton,
                 [&](Framework& framework) { return AskForButton(framework, headerKey, messageKey); });
}

void LoomShowProgress(CFStringRef title) {
  Guarded([&](Framework& framework) { framework.GetProgress().Show(framework.Sentence(title)); });
}

void LoomUpdateProgress(CFStringRef text, int step, int steps) {
  Guarded(
      [&](Framework& framework) { framework.GetProgress().Update(framework.Sentence(text), step, steps); });
}

void LoomHideProgress(void) {
  Guarded([](Framework& framework) { framework.GetProgress().Hide(); });
}

void LoomSetIsOnline(bool online) {
  Guarded([&](Framework& framework) { framework.SetIsOnline(online); });
}

void LoomSetHostDetails(CFDictionaryRef details) {
  Guarded([&](Framework& framework) { framework.SetHostDetails(details); });
}

void LoomShowMissingFonts(CFArrayRef fonts) {
  Guarded([&](Framework& framework) {
    NoticeWithFonts(framework, "MissingFontsHeader", "MissingFontsMessage", fonts);
  });
}
