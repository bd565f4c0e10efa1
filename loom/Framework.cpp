#include "Framework.h"

#include <cstdlib>

#include "Dialogs.h"
#include "GStringUtils.h"
#include "HostNames.h"
#include "Memory/CFVector.h"
#include "System/StandardFolders.h"

namespace {

constexpr const char* kUserSwitches[] = {
    "EnablePlugin",         "EnableGlyphMark",         "PickBestMatch",          "SupportEmbeddedObjects",
    "CloseFontsOnDocClose", "CloseFontsOnHostAppQuit", "ActivateEntireFamilies", "ActivateGlobally",
    "ActivateLocally",      "EnableLogging",
};

std::unique_ptr<Framework>& Instance() {
  static std::unique_ptr<Framework> sInstance;
  return sInstance;
}

std::string EnvironmentText(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

RetainPtr<CFBundleRef> OwnBundle() {
  return retainCF(CFBundleGetBundleWithIdentifier(CFSTR("com.talworth.Plugins")));
}

// The bundle that the one who loaded it says it is.
RetainPtr<CFBundleRef> BundleAtURL(CFTypeRef value) {
  RetainPtr<CFURLRef> url = retainCF(dynamicCF<CFURLRef>(value));
  if (const auto text = dynamicCF<CFStringRef>(value)) {
    const bool isURL = CFStringHasPrefix(text, CFSTR("file:"));
    url = isURL ? adoptCF(CFURLCreateWithString(kCFAllocatorDefault, text, nullptr))
                : ToCFURL(ToStdString(text), true);
  }
  return url ? adoptCF(CFBundleCreate(kCFAllocatorDefault, url.get())) : nullptr;
}

}  // namespace

Framework& Framework::Get() {
  if (Instance() == nullptr) Instance() = std::make_unique<Framework>();
  return *Instance();
}

void Framework::Reset() {
  Instance().reset();
}

Framework::Framework()
    : m_texts(OwnBundle()),
      m_preferences(platform::StandardFolders::ConfigHome() + "/hornbeam/Preferences.plist",
                    EnvironmentText("LOOM_PREFERENCES"), [this](const std::string& sentence) {
                      if (m_reported.insert(sentence).second) Dialogs::Say(sentence);
                    }) {}

int Framework::Initialize(CFMutableDictionaryRef startup) {
  if (dynamicCF<CFDictionaryRef>(startup) == nullptr) return 1;
  m_startup = retainCF(startup);
  if (auto bundle = BundleAtURL(CFDictionaryGetValue(startup, CFSTR("FrameworkURL")))) {
    m_texts = Texts(std::move(bundle));
  }
  return 0;
}

void Framework::SetHostDetails(CFDictionaryRef details) {
  if (dynamicCF<CFDictionaryRef>(details) == nullptr) return;
  m_hostAppDisplayName = ToStdString(CFDictionaryGetValue(details, CFSTR("HostAppDisplayName")));
}

std::string Framework::StartupText(CFStringRef key) const {
  return m_startup ? ToStdString(CFDictionaryGetValue(m_startup.get(), key)) : "";
}

std::string Framework::HostAppDisplayName() const {
  return m_hostAppDisplayName.empty() ? HostNames::DisplayName(StartupText(CFSTR("HostApp")))
                                      : m_hostAppDisplayName;
}

CFStringRef Framework::GetHostAppDisplayName() {
  const std::string name = HostAppDisplayName();
  if (!m_givenHostName || ToStdString(m_givenHostName.get()) != name) m_givenHostName = ToCFString(name);
  return m_givenHostName.get();
}

CFStringRef Framework::GetStringPreference(const std::string& key) {
  const auto value = m_preferences.Get(key);
  const auto text = value ? value->AsString() : std::nullopt;
  RetainPtr<CFStringRef>& given = m_givenTexts[key];
  given = text ? ToCFString(*text) : nullptr;
  return given.get();
}

std::string Framework::Sentence(const std::string& key) const {
  return m_texts.Sentence(key, {StartupText(CFSTR("FontManager")), HostAppDisplayName()});
}

std::string Framework::Sentence(CFStringRef key) const {
  return key != nullptr ? Sentence(ToStdString(key)) : std::string();
}

void Framework::ShowAboutBox() const {
  const auto line = [this](const char* key, const std::string& value) {
    return value.empty() ? value : "\n" + GStringUtils::StringReplace(Sentence(key), "%@", value, 1);
  };
  std::string text = Sentence("AboutMessage") +
                     line("AboutPluginVersion", StartupText(CFSTR("PluginVersion"))) +
                     line("AboutLibraryVersion", StartupText(CFSTR("TalworthPluginInterfaceVersion")));
  if (m_isOnline) text += "\n" + Sentence(*m_isOnline ? "AboutOnline" : "AboutOffline");
  Dialogs::Notice(Sentence("AboutHeader"), text);
}

std::vector<std::string> Framework::PreferenceLines() {
  std::vector<std::string> lines;
  for (const char* key : kUserSwitches) {
    const auto value = m_preferences.Get(key);
    std::string line = value && value->AsBool() ? "[x] " : "[ ] ";
    line += Sentence(std::string("Preference.") + key);
    if (m_preferences.IsOverridden(key)) line += " " + Sentence("PreferenceOverridden");
    lines.push_back(line);
  }
  return lines;
}

void Framework::ShowPreferences() {
  const std::string title =
      GStringUtils::StringReplace(Sentence("PreferencesTitle"), "%@", m_preferences.GetPath(), 1);
  if (!Dialogs::CanAsk()) {
    Dialogs::Notice("", title);
    return;
  }
  while (true) {
    const auto choice = Dialogs::Choose(title, PreferenceLines(), Sentence("PreferencesPrompt"));
    if (!choice.index) return;
    const char* const key = kUserSwitches[*choice.index];
    const auto value = m_preferences.Get(key);
    m_preferences.Set(key, PreferenceValue(!(value && value->AsBool())));
  }
}
