#include "Activation/FontActivationTracker.h"

#include <cstdlib>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "GBlockingLockStrategy.h"
#include "GScopedLock.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

constexpr CFIndex kUUIDBufferSize = 100;

bool CopyFreshUUIDText(char* buffer, CFIndex size) {
  const RetainPtr<CFUUIDRef> uuid = adoptCF(CFUUIDCreate(nullptr));
  if (!uuid) return false;
  const RetainPtr<CFStringRef> text = adoptCF(CFUUIDCreateString(nullptr, uuid.get()));
  return text && CFStringGetCString(text.get(), buffer, size, kCFStringEncodingUTF8);
}

FontActivationTracker::UUIDTextProc sUUIDTextProc = CopyFreshUUIDText;

}  // namespace

FontActivationTracker::FontActivationTracker(LoomInterface* loomInterface)
    : m_pLoomInterface(loomInterface) {}

FontActivationTracker::~FontActivationTracker() {
  const GScopedLock lock(m_Mutex);
  ReleaseAllFonts();
}

std::string FontActivationTracker::GenerateUniqueIdentifier() {
  char buffer[kUUIDBufferSize] = {};
  std::string identifier;
  if (sUUIDTextProc(buffer, kUUIDBufferSize)) identifier = buffer;
  if (identifier.empty()) identifier.assign(1, static_cast<char>(rand()));  // NOLINT: any byte will do
  OutputIndentedAndFormattedString(0, "FontActivationTracker::GenerateUniqueIdentifier() returning '%s'",
                                   identifier.c_str());
  return identifier;
}

void FontActivationTracker::SetUUIDTextProcForTesting(UUIDTextProc proc) {
  sUUIDTextProc = proc ? proc : CopyFreshUUIDText;
}

int FontActivationTracker::ActivateDocumentFonts(const std::string& identifier,
                                                 const std::string& documentPath,
                                                 CFMutableArrayRef& matchedFontData,
                                                 CFMutableArrayRef& problemFontData,
                                                 CFMutableArrayRef fonts) {
  OperationTrace trace("FontActivationTracker::ActivateDocumentFonts",
                       "Entering FontActivationTracker::ActivateDocumentFonts('%s', '%s')",
                       identifier.c_str(), documentPath.c_str());
  try {
    FontManagerInterface* manager = FontManagerInterface::GetConnectedFontManager();
    if (!manager) {
      trace.Exiting("ActivateDocumentFonts returning kErrorHornbeamNotRunning (EARLY RETURN)");
      return kErrorHornbeamNotRunning;
    }
    int result = 0;
    if (manager->ConnectedToCoreAgent()) {
      result =
          manager->ActivateDocumentFontsByPath(documentPath.c_str(), fonts, matchedFontData, problemFontData);
      RegisterMatchedRecords(matchedFontData, identifier);
    }
    trace.Exiting("ActivateDocumentFonts returning %d", result);
    return result;
  } catch (...) {
    OutputIndentedAndFormattedString(
        0, "   *** Exception caught in FontActivationTracker::ActivateDocumentFonts.  Rethrowing.");
    throw;
  }
}

int FontActivationTracker::ActivateFontsByID(const std::string& identifier, CFMutableArrayRef fonts,
                                             int& fontCount) {
  OperationTrace trace("FontActivationTracker::ActivateFontsByID",
                       "Entering FontActivationTracker::ActivateFontsByID('%s')", identifier.c_str());
  try {
    FontManagerInterface* manager = FontManagerInterface::GetConnectedFontManager();
    if (!manager) {
      trace.Exiting("ActivateFontsByID returning kErrorHornbeamNotRunning (EARLY RETURN)");
      return kErrorHornbeamNotRunning;
    }
    int result = 0;
    if (manager->ConnectedToCoreAgent()) {
      const RetainPtr<CFMutableArrayRef> fontsActivated = MakeArray();
      void* deactivationData = nullptr;
      result =
          manager->ActivateFontsByID(fonts, identifier, &deactivationData, fontsActivated.get(), nullptr);
      fontCount = static_cast<int>(CFArrayGetCount(fontsActivated.get()));
      RegisterMatchedRecords(fontsActivated.get(), identifier);
    }
    trace.Exiting("ActivateFontsByID returning %d", result);
    return result;
  } catch (...) {
    OutputIndentedAndFormattedString(
        0, "   *** Exception caught in FontActivationTracker::ActivateFontsByID.  Rethrowing.");
    throw;
  }
}

void FontActivationTracker::RegisterMatchedRecords(CFArrayRef records, const std::string& identifier) {
  const CFIndex count = FontRecord::Count(records);
  for (CFIndex i = 0; i < count; ++i) RegisterMatchedRecord(FontRecord::At(records, i), i, identifier);
}

void FontActivationTracker::RegisterMatchedRecord(CFDictionaryRef record, CFIndex index,
                                                  const std::string& identifier) {
  CFStringRef name = FontRecord::GetPostScriptName(record);
  const uint32_t fontID = FontRecord::GetDatabaseID(record);
  if (!name || fontID == 0) {
    OutputIndentedAndFormattedString(
        0, "   ...Error:  PostscriptName and/or DatabaseID not found in matched font dict for i = %d",
        static_cast<int>(index));
    return;
  }
  OutputIndentedAndFormattedString(
      0, "kGM_ActivationStateKey '%s', kGM_IsActiveKey '%s', kGM_DatabaseIDKey %d for '%s')",
      XCFUtils::GetStringFromDict(record, kGM_ActivationStateKey).c_str(),
      XCFUtils::GetStringFromDict(record, kGM_IsActiveKey).c_str(), static_cast<int>(fontID),
      XCFUtils::GetStdString(name).c_str());
  const bool bAlreadyActive = XCFUtils::GetBoolFromDictString(record, kGM_IsActiveKey);

  if (!identifier.empty()) {
    RegisterFontWithDocument(record, name, fontID, bAlreadyActive, identifier, nullptr);
    return;
  }
  const CFArrayRef subDocuments =
      dynamicCF<CFArrayRef>(CFDictionaryGetValue(record, kGM_SubDocumentsWithFontKey));
  if (!subDocuments) {
    OutputIndentedAndFormattedString(0,
                                     "WARNING:  font %d for document '%s' has no kGM_SubDocumentsWithFontKey",
                                     static_cast<int>(fontID), identifier.c_str());
    return;
  }
  const CFIndex count = CFArrayGetCount(subDocuments);
  for (CFIndex i = 0; i < count; ++i) {
    const CFStringRef subDocument = dynamicCF<CFStringRef>(CFArrayGetValueAtIndex(subDocuments, i));
    if (!subDocument) continue;
    RegisterFontWithDocument(record, name, fontID, bAlreadyActive, XCFUtils::GetStdString(subDocument),
                             nullptr);
  }
}

void FontActivationTracker::RegisterFontWithDocument(CFDictionaryRef fontRecord, CFStringRef postscriptName,
                                                     uint32_t fontID, bool bAlreadyActive,
                                                     const std::string& identifier, void* deactivationData) {
  const OperationTrace trace("FontActivationTracker::RegisterFontWithDocument",
                             "Entering FontActivationTracker::RegisterFontWithDocument(%d, %d, '%s')",
                             static_cast<int>(fontID), bAlreadyActive, identifier.c_str());
  const GScopedLock lock(m_Mutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) {
    OutputIndentedAndFormattedString(
        0, "*** UH-OH, font %d not registered for '%s' because the tracker is busy on this thread",
        static_cast<int>(fontID), identifier.c_str());
    return;
  }

  SDocumentRecord& document = m_mDocuments[identifier];
  document.sDocumentIdentifier = identifier;
  document.vFontIDs.push_back(fontID);

  const auto [entry, isNew] = m_mFonts.try_emplace(fontID);
  SFontRecord& font = entry->second;
  if (isNew) {
    if (fontRecord) font.fontInfo = static_cast<CFDictionaryRef>(CFRetain(fontRecord));
    if (postscriptName) font.postscriptName = static_cast<CFStringRef>(CFRetain(postscriptName));
    font.nDatabaseID = fontID;
    font.bAlreadyActive = bAlreadyActive;
    font.pDeactivationData = deactivationData;
  }
  font.bOpen = true;
  if (font.nRefCount == 0) font.sFirstDocumentIdentifier = identifier;
  ++font.nRefCount;
}

unsigned int FontActivationTracker::CountFontsOpenedForIdentifier(const std::string& identifier) {
  OperationTrace trace("CountFontsOpenedForIdentifier", "Entering %s('%s')", "CountFontsOpenedForIdentifier",
                       identifier.c_str());
  unsigned int count = 0;
  const GScopedLock lock(m_Mutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) return count;

  const auto document = m_mDocuments.find(identifier);
  if (document == m_mDocuments.end()) {
    OutputIndentedAndFormattedString(0, "No entry in FontActivationTracker::m_mDocuments for '%s'",
                                     identifier.c_str());
    return count;
  }
  for (const uint32_t fontID : document->second.vFontIDs) {
    const auto entry = m_mFonts.find(fontID);
    if (entry == m_mFonts.end()) continue;
    const SFontRecord& font = entry->second;
    if (!font.bOpen || font.bAlreadyActive) continue;
    ++count;
    OutputIndentedAndFormattedString(0, "Font '%s' (#%d) has been referenced %d times.",
                                     XCFUtils::GetStdString(font.postscriptName).c_str(),
                                     static_cast<int>(fontID), static_cast<int>(font.nRefCount));
  }
  trace.Exiting("%s('%s') returning %d", "CountFontsOpenedForIdentifier", identifier.c_str(),
                static_cast<int>(count));
  return count;
}

void FontActivationTracker::AddUnresolvedFont(const std::string& identifier,
                                              const std::string& postscriptName) {
  m_mUnresolvedFonts[identifier].push_back(postscriptName);
}
