#include "Preferences.h"

#include <utility>

#include "GStringUtils.h"
#include "Memory/CFVector.h"

namespace {

std::string Stripped(const std::string& text) {
  return GStringUtils::StripPrecedingWhitespace(GStringUtils::StripTrailingWhitespace(text));
}

}  // namespace

Preferences::Preferences(std::string path, std::string_view overrides,
                         const PreferencesFile::Reporter& report)
    : m_file(std::move(path), report) {
  ReadOverrides(overrides, report);
}

void Preferences::ReadOverrides(std::string_view overrides, const PreferencesFile::Reporter& report) {
  for (const std::string& entry : GStringUtils::OSTokenizeString(std::string(overrides), ";")) {
    if (Stripped(entry).empty()) continue;
    const std::size_t delimiter = entry.find('=');
    const std::string key = delimiter == entry.npos ? "" : Stripped(entry.substr(0, delimiter));
    if (key.empty()) {
      report("'" + entry + "' in LOOM_PREFERENCES isn't of the form Key=value and is ignored.");
      continue;
    }
    m_overrides.insert_or_assign(key, PreferenceValue(Stripped(entry.substr(delimiter + 1))));
  }
}

std::optional<PreferenceValue> Preferences::Get(const std::string& key) {
  if (const auto found = m_overrides.find(key); found != m_overrides.end()) return found->second;
  if (const auto found = m_unstored.find(key); found != m_unstored.end()) return found->second;
  Refresh();
  const auto found = m_values.find(key);
  return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

void Preferences::Set(const std::string& key, const std::optional<PreferenceValue>& value) {
  const RetainPtr<CFStringRef> name = ToCFString(key);
  const RetainPtr<CFTypeRef> object = value ? value->ToObject() : nullptr;
  if (!name || key.empty() || (value && !object)) return;
  if (m_file.Change(name.get(), object.get())) {
    m_unstored.erase(key);
  } else {
    m_unstored.insert_or_assign(key, value);
  }
}

bool Preferences::Exist() {
  Refresh();
  return m_exist;
}

void Preferences::Refresh() {
  // Taken before the file is read: a change in between shows the next time.
  const PreferencesFile::Stamp stamp = m_file.GetStamp();
  if (m_stamp == stamp) return;
  m_stamp = stamp;
  const RetainPtr<CFDictionaryRef> dictionary = m_file.Read();
  const CFIndex count = CFDictionaryGetCount(dictionary.get());
  m_exist = count > (CFDictionaryContainsKey(dictionary.get(), CFSTR("CurrentWorkgroup")) ? 1 : 0);
  m_values.clear();
  const auto add = [](const void* key, const void* value, void* context) {
    const auto name = dynamicCF<CFStringRef>(key);
    if (const auto known = PreferenceValue::FromObject(value); name != nullptr && known) {
      static_cast<Values*>(context)->insert_or_assign(ToStdString(name), *known);
    }
  };
  CFDictionaryApplyFunction(dictionary.get(), add, &m_values);
}
