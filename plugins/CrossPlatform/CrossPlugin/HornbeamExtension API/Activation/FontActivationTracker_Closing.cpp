#include "Activation/FontActivationTracker.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "GBlockingLockStrategy.h"
#include "GScopedLock.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

// A font that the answer leaves out counts as this plug-in's.
bool IsPluginActivated(const std::map<unsigned int, bool>& states, uint32_t fontID) {
  const auto found = states.find(fontID);
  return found == states.end() || found->second;
}

void CountDown(SFontRecord& font) {
  if (font.nRefCount > 0) --font.nRefCount;
}

void CloseRecord(SFontRecord& font) {
  font.bOpen = false;
  if (font.fontInfo) CFRelease(font.fontInfo);
  if (font.postscriptName) CFRelease(font.postscriptName);
  font.fontInfo = nullptr;
  font.postscriptName = nullptr;
}

int DeactivateOne(FontManagerInterface& manager, const SFontRecord& font) {
  const int code = manager.DeactivateFont(font.fontInfo, font.pDeactivationData);
  if (code != 0) OutputIndentedAndFormattedString(0, "XTDeactivateFont returned %d", code);
  return code;
}

}  // namespace

int FontActivationTracker::CloseAllFontsForIdentifier(const std::string& identifier,
                                                      bool bDeactivateClosedFonts,
                                                      CFMutableArrayRef fontsDeactivated) {
  OperationTrace trace("FontActivationTracker::CloseAllFontsForIdentifier",
                       "Entering FontActivationTracker::CloseAllFontsForIdentifier('%s', %d)",
                       identifier.c_str(), bDeactivateClosedFonts);
  FontManagerInterface* manager = FontManagerInterface::GetConnectedFontManager();
  if (!manager) return kErrorHornbeamNotRunning;
  const GScopedLock lock(m_Mutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) return static_cast<int>(GMutex::kMutexDeadlockErr);

  const auto document = m_mDocuments.find(identifier);
  if (document == m_mDocuments.end()) {
    OutputIndentedAndFormattedString(0, "No entry in FontActivationTracker::m_mDocuments for '%s'",
                                     identifier.c_str());
    return 0;
  }
  const std::vector<uint32_t>& fontIDs = document->second.vFontIDs;
  if (fontIDs.empty()) {
    OutputIndentedAndFormattedString(0, "No fonts registered for '%s'", identifier.c_str());
    m_mDocuments.erase(document);
    return 0;
  }

  int result = 0;
  try {
    const ClientStates states = manager->GetClientFontActivationStates(fontIDs);
    result = manager->ConnectedToCoreAgent()
                 ? CloseFontsAtAgent(*manager, fontIDs, bDeactivateClosedFonts, states, fontsDeactivated)
                 : CloseFontsOneByOne(*manager, fontIDs, bDeactivateClosedFonts, fontsDeactivated);
  } catch (...) {
    m_mDocuments.erase(document);
    trace.Exiting("FontActivationTracker::CloseAllFontsForIdentifier() exiting abnormally");
    throw;
  }
  m_mDocuments.erase(document);
  trace.Exiting("FontActivationTracker::CloseAllFontsForIdentifier() returning %d", result);
  return result;
}

int FontActivationTracker::CloseFontsAtAgent(FontManagerInterface& manager,
                                             const std::vector<uint32_t>& fontIDs,
                                             bool bDeactivateClosedFonts, const ClientStates& states,
                                             CFMutableArrayRef fontsDeactivated) {
  const RetainPtr<CFMutableArrayRef> fontsToDeactivate = MakeArray();
  for (const uint32_t fontID : fontIDs) {
    const auto entry = m_mFonts.find(fontID);
    if (entry == m_mFonts.end()) {
      OutputIndentedAndFormattedString(0,
                                       "No entry found for nDatabaseID(%d) in FontManagerInterface::m_mFonts",
                                       static_cast<int>(fontID));
      continue;
    }
    OutputIndentedAndFormattedString(0, "Considering whether to deactivate databaseID %d",
                                     static_cast<int>(fontID));
    SFontRecord& font = entry->second;
    CountDown(font);
    if (!bDeactivateClosedFonts) continue;

    const std::string name = XCFUtils::GetStdString(font.postscriptName);
    if (font.nRefCount != 0) {
      OutputIndentedAndFormattedString(0, "Not deactivating '%s' because its ref count is %d", name.c_str(),
                                       static_cast<int>(font.nRefCount));
      continue;
    }
    if (!IsPluginActivated(states, fontID)) {
      OutputIndentedAndFormattedString(0, "Not deactivating '%s' because it is no longer plugin activated",
                                       name.c_str());
    } else if (font.bAlreadyActive) {
      OutputIndentedAndFormattedString(0, "Not deactivating '%s' because it was already active",
                                       name.c_str());
    } else {
      OutputIndentedAndFormattedString(0, "Adding '%s' to fontsToDeactivate.", name.c_str());
      if (font.fontInfo) CFArrayAppendValue(fontsToDeactivate.get(), font.fontInfo);
    }
    CloseRecord(font);
    m_mFonts.erase(entry);
  }
  return manager.DeactivateFonts(fontsToDeactivate.get(), nullptr, fontsDeactivated);
}

int FontActivationTracker::CloseFontsOneByOne(FontManagerInterface& manager,
                                              const std::vector<uint32_t>& fontIDs,
                                              bool bDeactivateClosedFonts,
                                              CFMutableArrayRef fontsDeactivated) {
  int result = 0;
  for (const uint32_t fontID : fontIDs) {
    const auto entry = m_mFonts.find(fontID);
    if (entry == m_mFonts.end()) continue;
    SFontRecord& font = entry->second;
    CountDown(font);
    if (font.nRefCount != 0 || !bDeactivateClosedFonts) continue;

    if (!font.bAlreadyActive) {
      const int code = DeactivateOne(manager, font);
      if (code != 0) result = code;
      if (code == kErrorHornbeamNotRunning) break;
      if (code == 0 && fontsDeactivated && font.fontInfo) CFArrayAppendValue(fontsDeactivated, font.fontInfo);
    }
    CloseRecord(font);
    m_mFonts.erase(entry);
  }
  return result;
}

int FontActivationTracker::CloseAllFonts(bool bDeactivateClosedFonts) {
  OperationTrace trace("FontActivationTracker::CloseAllFonts",
                       "Entering FontActivationTracker::CloseAllFonts(%d)", bDeactivateClosedFonts);
  FontManagerInterface* manager = FontManagerInterface::GetConnectedFontManager();
  if (!manager) return kErrorHornbeamNotRunning;
  if (m_mFonts.empty()) return 0;
  const GScopedLock lock(m_Mutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) return static_cast<int>(GMutex::kMutexDeadlockErr);

  int result = 0;
  try {
    std::vector<uint32_t> fontIDs;
    fontIDs.reserve(m_mFonts.size());
    for (const auto& [fontID, font] : m_mFonts) fontIDs.push_back(fontID);
    const ClientStates states = manager->GetClientFontActivationStates(fontIDs);
    result = manager->ConnectedToCoreAgent() ? CloseEveryFontAtAgent(*manager, bDeactivateClosedFonts, states)
                                             : CloseEveryFontOneByOne(*manager, bDeactivateClosedFonts);
  } catch (...) {
    ReleaseAllFonts();
    trace.Exiting("FontActivationTracker::CloseAllFonts() exiting abnormally");
    throw;
  }
  ReleaseAllFonts();
  trace.Exiting("FontActivationTracker::CloseAllFonts() returning %d", result);
  return result;
}

int FontActivationTracker::CloseEveryFontAtAgent(FontManagerInterface& manager, bool bDeactivateClosedFonts,
                                                 const ClientStates& states) {
  const RetainPtr<CFMutableArrayRef> fontsToDeactivate = MakeArray();
  for (auto& [fontID, font] : m_mFonts) {
    const bool giveBack = font.fontInfo && font.bOpen && !font.bAlreadyActive && bDeactivateClosedFonts &&
                          IsPluginActivated(states, fontID);
    if (giveBack) CFArrayAppendValue(fontsToDeactivate.get(), font.fontInfo);
    CloseRecord(font);
  }
  return manager.DeactivateFonts(fontsToDeactivate.get(), nullptr, nullptr);
}

int FontActivationTracker::CloseEveryFontOneByOne(FontManagerInterface& manager,
                                                  bool bDeactivateClosedFonts) {
  int result = 0;
  for (auto& [fontID, font] : m_mFonts) {
    if (font.bOpen && !font.bAlreadyActive && bDeactivateClosedFonts) {
      const int code = DeactivateOne(manager, font);
      if (code != 0) result = code;
      if (code == kErrorHornbeamNotRunning) break;
    }
    CloseRecord(font);
  }
  return result;
}

void FontActivationTracker::ReleaseAllFonts() {
  for (auto& [fontID, font] : m_mFonts) CloseRecord(font);
  m_mFonts.clear();
}
