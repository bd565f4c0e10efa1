#include "LoomInterface/LoomInterface.h"
#include "LoomInterface/PreferenceKeys.h"

bool LoomInterface::GetPreferenceForKey(CFStringRef key) const {
  return IsValid() && m_osData->functions.pfLoomGetPreferenceForKey &&
         m_osData->functions.pfLoomGetPreferenceForKey(key);
}

void LoomInterface::SetPreferenceForKey(CFStringRef key, bool value) {
  if (IsValid() && m_osData->functions.pfLoomSetPreferenceForKey) {
    m_osData->functions.pfLoomSetPreferenceForKey(key, value);
  }
}

int LoomInterface::GetLongPreferenceForKey(CFStringRef key) const {
  if (!IsValid() || !m_osData->functions.pfLoomGetLongPreferenceForKey) return 0;
  // The store holds long values; narrowing keeps the low half, in which 0xFFFFFFFE and -2 are the same.
  return static_cast<int>(m_osData->functions.pfLoomGetLongPreferenceForKey(key));
}

void LoomInterface::SetLongPreferenceForKey(CFStringRef key, int value) {
  if (IsValid() && m_osData->functions.pfLoomSetLongPreferenceForKey) {
    m_osData->functions.pfLoomSetLongPreferenceForKey(key, value);
  }
}

bool LoomInterface::DoPreferencesExist() const {
  return IsValid() && m_osData->functions.pfLoomDoPreferencesExist &&
         m_osData->functions.pfLoomDoPreferencesExist();
}

bool LoomInterface::GetEnabledAutoActivationPref() const {
  return GetPreferenceForKey(kEnablePluginPrefKey);
}

bool LoomInterface::GetEnabledGlyphMark() const {
  return isHostAppUsingNextGenPlugin() || GetPreferenceForKey(kEnableGlyphMarkPrefKey);
}

bool LoomInterface::GetPickBestMatch() const {
  return GetPreferenceForKey(kPickBestMatchPrefKey);
}

bool LoomInterface::GetSupportEmbeddedObjects() const {
  return GetPreferenceForKey(kSupportEmbeddedObjectsPrefKey);
}

bool LoomInterface::GetCloseFontsOnHostAppQuit() const {
  return GetPreferenceForKey(kCloseFontsOnHostAppQuitPrefKey);
}

bool LoomInterface::GetCloseFontsOnDocClose() const {
  return GetPreferenceForKey(kCloseFontsOnDocClosePrefKey);
}

bool LoomInterface::GetActivateEntireFamily() const {
  return GetPreferenceForKey(kActivateEntireFamiliesPrefKey);
}

bool LoomInterface::GetEnabledLoggingPref() const {
  return GetPreferenceForKey(kEnableLoggingPrefKey);
}

int LoomInterface::GetCurrentWorkgroupID() const {
  return GetLongPreferenceForKey(kCurrentWorkgroupPrefKey);
}

void LoomInterface::SetCurrentWorkgroupID(int workgroupID) {
  SetLongPreferenceForKey(kCurrentWorkgroupPrefKey, workgroupID);
}

bool LoomInterface::isHostAppUsingNextGenPlugin() const {
  return CFBundleGetBundleWithIdentifier(CFSTR("com.talworth.PluginCore")) != nullptr;
}
