#include "PendingActivationTracker.h"

#include <string>

#include "Activation/Vocabulary/FontRecord.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "HBInDesignUtils.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"

namespace {

int RemoveIdenticalFontFromArray(CFDictionaryRef font, CFMutableArrayRef array) {
  CFStringRef name = FontRecord::GetPostScriptName(font);
  if (name == nullptr || array == nullptr) {
    return 0;
  }
  const uint32_t id = FontRecord::GetDatabaseID(font);
  for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
    CFDictionaryRef other = FontRecord::At(array, i);
    CFStringRef otherName = FontRecord::GetPostScriptName(other);
    // A font without an ID goes by its name alone.
    if (otherName != nullptr && CFEqual(name, otherName) &&
        (id == 0 || FontRecord::GetDatabaseID(other) == id)) {
      CFArrayRemoveValueAtIndex(array, i);
      return 1;
    }
  }
  return 0;
}

/// Takes every font of one list out of the other.
int RemoveConflictingFonts(CFArrayRef fonts, CFMutableArrayRef pending) {
  if (pending == nullptr || CFArrayGetCount(pending) == 0 || fonts == nullptr) {
    return 0;
  }
  int removed = 0;
  for (CFIndex i = 0; i < CFArrayGetCount(fonts) && CFArrayGetCount(pending) > 0; ++i) {
    removed += RemoveIdenticalFontFromArray(FontRecord::At(fonts, i), pending);
  }
  return removed;
}

/// Asks for the change once more, by way of its opposite.
void RetryChange(FontManagerInterface& fontManager, CFDictionaryRef font, const std::string& name,
                 bool activation, int retry) {
  if (activation) {
    const int deactivated = fontManager.DeactivateFont(font, nullptr);
    const int activated = fontManager.ActivateFontByID(font, "", nullptr);
    OutputIndentedAndFormattedString(0,
                                     "   >>> Retry #%d:  Requested deactivation (result = %d) and "
                                     "re-activation (result = %d) of %s.",
                                     retry, deactivated, activated, name.c_str());
  } else {
    const int activated = fontManager.ActivateFontByID(font, "", nullptr);
    const int deactivated = fontManager.DeactivateFont(font, nullptr);
    OutputIndentedAndFormattedString(0,
                                     "   >>> Retry #%d:  Requested activation (result = %d) and "
                                     "re-deactivation (result = %d) of %s.",
                                     retry, activated, deactivated, name.c_str());
  }
}

}  // namespace

PendingActivationTracker::PendingActivationTracker(int nMaxRetries) : m_nMaxRetries(nMaxRetries) {}

CFMutableArrayRef PendingActivationTracker::GetPendingDeactivatedFonts() {
  if (!m_PendingDeactivatedFonts) {
    m_PendingDeactivatedFonts = MakeArray();
  }
  return m_PendingDeactivatedFonts.get();
}

int PendingActivationTracker::RemoveConflictingPendingDeactivatedFonts() {
  return RemoveConflictingFonts(m_PendingActivatedFonts.get(), m_PendingDeactivatedFonts.get());
}

int PendingActivationTracker::RemoveConflictingPendingActivatedFonts() {
  return RemoveConflictingFonts(m_PendingDeactivatedFonts.get(), m_PendingActivatedFonts.get());
}

bool PendingActivationTracker::CheckPendingActivationChanges() {
  return CheckPendingActivations() && CheckPendingDeactivations();
}

bool PendingActivationTracker::CheckPendingActivations() {
  return CheckPendingActivationChanges(true);
}

bool PendingActivationTracker::CheckPendingDeactivations() {
  return CheckPendingActivationChanges(false);
}

bool PendingActivationTracker::CheckPendingActivationChanges(bool activation) {
  OutputIndentedAndFormattedString(
      1, "Entering PendingActivationTracker::CheckPendingActivationChanges(activation=%d)", activation);
  const auto finish = [](bool settled) {
    OutputIndentedAndFormattedString(
        -1, "PendingActivationTracker::CheckPendingActivationChanges() returning %d", settled);
    return settled;
  };

  const InterfacePtr<IFontMgr> fontMgr = HBInDesignUtils::QueryFontMgr();
  FontManagerInterface* fontManager = FontManagerInterface::GetFontManager();
  if (!fontMgr || fontManager == nullptr) {
    OutputIndentedAndFormattedString(0,
                                     "   *** ERROR in PendingActivationTracker::CheckPendingActivations():  "
                                     "NULL IFontMgr ptr.");
    return finish(true);
  }

  // Held for the walk, whose retries call out.
  const RetainPtr<CFMutableArrayRef> pending =
      activation ? m_PendingActivatedFonts : m_PendingDeactivatedFonts;
  if (!pending) {
    return finish(true);
  }
  OutputIndentedAndFormattedString(0, "   >>> PendingActivationTracker:  processing %d pending %s fonts",
                                   static_cast<int>(CFArrayGetCount(pending.get())),
                                   activation ? "activated" : "deactivated");
  if (CFArrayGetCount(pending.get()) == 0) {
    return finish(true);
  }

  int& retryCount = activation ? m_nActivationRetryCount : m_nDeactivationRetryCount;
  const bool mayRetry = retryCount < m_nMaxRetries;
  bool settled = true;
  for (CFIndex i = CFArrayGetCount(pending.get()) - 1; i >= 0; --i) {
    if (i >= CFArrayGetCount(pending.get())) {
      continue;
    }
    const RetainPtr<CFDictionaryRef> font = retainCF(FontRecord::At(pending.get(), i));
    const std::string name = ToStdString(FontRecord::GetPostScriptName(font.get()));
    if (name.empty() || FontRecord::GetDatabaseID(font.get()) == 0) {
      continue;
    }
    const bool available = HBInDesignUtils::HostHasFont(*fontMgr.get(), name);
    settled = available == activation;
    OutputIndentedAndFormattedString(
        0, "   >>> PendingActivationTracker:  InDesign says font \"%s\" %s available (it's %sup-to-date)",
        name.c_str(), available ? "IS" : "IS NOT", settled ? "" : "NOT ");
    if (settled || !mayRetry) {
      CFArrayRemoveValueAtIndex(pending.get(), i);
    } else {
      RetryChange(*fontManager, font.get(), name, activation, retryCount + 1);
    }
  }

  if (!settled && mayRetry) {
    ++retryCount;
    return finish(false);
  }
  OutputIndentedAndFormattedString(0, "   >>> Finished (%s) handling pending font %s, after %d retries",
                                   mayRetry ? "successfully" : "unsuccessfully",
                                   activation ? "activations" : "deactivations", retryCount);
  retryCount = 0;
  return finish(true);
}
