#include "HBIndesignPluginGlobals.h"

#include <algorithm>
#include <vector>

#include "ActivationListElement.h"
#include "DocumentElement.h"
#include "GBlockingLockStrategy.h"
#include "GMutex.h"
#include "GScopedLock.h"
#include "HBInDesignUtils.h"
#include "PendingActivationTracker.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace HBIndesignPluginGlobals {

bool16 ExecuteTimer = 0;
bool16 PerformingPackageAction = 0;
bool16 RefreshFontStuff = 0;
bool16 CheckHostFontAvailability = 0;
bool16 EmbeddedDocJustAdded = 0;
int TotalNoOfDuplicateFonts = 0;
int DuplicateFontIndex = 1;

namespace {

std::vector<std::unique_ptr<DocumentElement>> mDocumentList;
GMutex mDocumentListMutex;
std::vector<std::unique_ptr<ActivationListElement>> mActivationList;
GMutex mActivationListMutex;
UIDRef mDocUID;
std::string mCurrentDocumentPath;

std::unique_ptr<PendingActivationTracker> mPendingActivationTracker;

PendingActivationTracker& GetPendingActivationTracker() {
  if (!mPendingActivationTracker) {
    mPendingActivationTracker = std::make_unique<PendingActivationTracker>();
  }
  return *mPendingActivationTracker;
}

template <class Test>
DocumentElement* FindDocument(Test test) {
  GScopedLock lock(mDocumentListMutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) {
    return nullptr;
  }
  const auto found = std::find_if(mDocumentList.begin(), mDocumentList.end(), test);
  return found == mDocumentList.end() ? nullptr : found->get();
}

}  // namespace

DocumentElement* AddDocumentToDocumentList(std::unique_ptr<DocumentElement> element) {
  GScopedLock lock(mDocumentListMutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) {
    return nullptr;
  }
  mDocumentList.push_back(std::move(element));
  return mDocumentList.back().get();
}

DocumentElement* GetDocumentFromDocumentList(const UIDRef& document) {
  return FindDocument([&](const auto& element) { return element->GetUIDRef() == document; });
}

DocumentElement* GetDocumentFromDocumentList(const std::string& path) {
  return FindDocument([&](const auto& element) {
    std::string elementPath;
    return HBInDesignUtils::GetFullPathFromDocumentUIDRef(element->GetUIDRef(), elementPath) &&
           elementPath == path;
  });
}

int GetNoOfDocumentsInDocumentList() {
  GScopedLock lock(mDocumentListMutex, true, new GBlockingLockStrategy);
  return static_cast<int>(std::count_if(mDocumentList.begin(), mDocumentList.end(),
                                        [](const auto& element) { return !element->GetUIDRef().IsNull(); }));
}

void DeleteDocumentFromDocumentList(const UIDRef& document) {
  OutputIndentedAndFormattedString(0, "DeleteDocumentFromDocumentList");
  if (DocumentElement* element = GetDocumentFromDocumentList(document); element != nullptr) {
    element->ReleaseMemoryAcquiredByDocument();
    element->SetUIDRef(UIDRef::Null());
  }
}

void DeleteDocumentList() {
  GScopedLock lock(mDocumentListMutex, true, new GBlockingLockStrategy);
  if (lock.IsLocked()) {
    mDocumentList.clear();
  }
}

void DeleteActivationList() {
  GScopedLock lock(mActivationListMutex, true, new GBlockingLockStrategy);
  if (lock.IsLocked()) {
    mActivationList.clear();
  }
}

const UIDRef& GetUIDRef() {
  return mDocUID;
}

void SetUIDRef(const UIDRef& document) {
  if (!(document == mDocUID)) {
    mDocUID = document;
  }
}

const std::string& GetCurrentDocumentPath() {
  return mCurrentDocumentPath;
}

void SetCurrentDocumentPath(const std::string& path) {
  mCurrentDocumentPath = path;
}

void UpdateFontSystem() {
  const OperationTrace trace("HBIndesignPluginGlobals::UpdateFontSystem", "Entering %s()",
                             "HBIndesignPluginGlobals::UpdateFontSystem");
  if (const InterfacePtr<IFontMgr> fontMgr = HBInDesignUtils::QueryFontMgr(); fontMgr) {
    fontMgr->GetFontChangeSeed(true, false);
    fontMgr->Refresh();
  }
}

CFMutableArrayRef GetPendingDeactivatedFonts() {
  return GetPendingActivationTracker().GetPendingDeactivatedFonts();
}

int RemoveConflictingPendingDeactivatedFonts() {
  return GetPendingActivationTracker().RemoveConflictingPendingDeactivatedFonts();
}

int RemoveConflictingPendingActivatedFonts() {
  return GetPendingActivationTracker().RemoveConflictingPendingActivatedFonts();
}

bool CheckPendingActivationChanges() {
  return GetPendingActivationTracker().CheckPendingActivationChanges();
}

void CleanUpOnShutdown() {
  DeleteActivationList();
  DeleteDocumentList();
  mPendingActivationTracker.reset();
  mDocUID = UIDRef::Null();
  mCurrentDocumentPath.clear();
  ExecuteTimer = PerformingPackageAction = RefreshFontStuff = CheckHostFontAvailability = 0;
  EmbeddedDocJustAdded = 0;
}

}  // namespace HBIndesignPluginGlobals
