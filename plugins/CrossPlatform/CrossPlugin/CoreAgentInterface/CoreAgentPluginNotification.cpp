#include "CoreAgentInterface/CoreAgentPluginNotification.h"

#include <cstdint>
#include <exception>
#include <vector>

#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/CoreAgentPluginNotificationQueue.h"
#include "CoreAgentInterface/PluginNotificationKeys.h"
#include "Memory/CFCast.h"
#include "Utilities/DebugUtils.h"

namespace {

enum class Payload { kNone, kOnlineFlag, kFlag, kFontID, kPairs, kPreviews };

struct KindRow {
  PluginInterface::ECallbackKind kind;
  CFStringRef key;
  Payload payload;
};

// The whole vocabulary; every other kind is ignored.
const KindRow kKinds[] = {
    {PluginInterface::kAgentShutdown, kPluginNotification_AgentShutdown, Payload::kNone},
    {PluginInterface::kOnlineStateChanged, kPluginNotification_OnlineStateChanged, Payload::kOnlineFlag},
    {PluginInterface::kLoggedInStateChanged, kPluginNotification_LoggedInStateChanged, Payload::kPairs},
    {PluginInterface::kWorkgroupsChanged, kPluginNotification_WorkgroupsChanged, Payload::kNone},
    {PluginInterface::kUserPermissionsChanged, kPluginNotification_UserPermissionsChanged, Payload::kNone},
    {PluginInterface::kFontActivated, kPluginNotification_FontActivated, Payload::kFontID},
    {PluginInterface::kFontDeactivated, kPluginNotification_FontDeactivated, Payload::kFontID},
    {PluginInterface::kFontMissing, kPluginNotification_FontMissing, Payload::kFontID},
    {PluginInterface::kGoogleWebFontsEnabled, kPluginNotification_GoogleWebFontsEnabled, Payload::kFlag},
    {PluginInterface::kGoogleReplicationProgress, kPluginNotification_GoogleReplicationProgress,
     Payload::kPairs},
    {PluginInterface::kGoogleReplicationStopped, kPluginNotification_GoogleReplicationStopped,
     Payload::kNone},
    {PluginInterface::kPreviewPNGsRendered, kPluginNotification_PreviewPNGsRendered, Payload::kPreviews},
    {PluginInterface::kSmartListsChanged, kPluginNotification_SmartListsChanged, Payload::kNone},
    {PluginInterface::kBulkReplicationProgress, kPluginNotification_BulkReplicationProgress, Payload::kPairs},
    {PluginInterface::kBulkReplicationStopped, kPluginNotification_BulkReplicationStopped, Payload::kNone},
    {PluginInterface::kIncrementalReplicationProgress, kPluginNotification_IncrementalReplicationProgress,
     Payload::kPairs},
    {PluginInterface::kIncrementalReplicationStopped, kPluginNotification_IncrementalReplicationStopped,
     Payload::kNone},
    {PluginInterface::kPanelDataChanged, kPluginNotification_PanelDataChanged, Payload::kNone},
    {PluginInterface::kDesignActivationNonCompliant, kPluginNotification_DesignActivationNonCompliant,
     Payload::kFontID},
    {PluginInterface::kOfflineDownloadFinished, kPluginNotification_OfflineDownloadFinished, Payload::kNone},
    {PluginInterface::kFontServerReplicationProgress, kPluginNotification_FontServerReplicationProgress,
     Payload::kPairs},
    {PluginInterface::kFontServerReplicationStopped, kPluginNotification_FontServerReplicationStopped,
     Payload::kNone},
};

const KindRow* FindKind(PluginInterface::ECallbackKind kind) {
  for (const KindRow& row : kKinds) {
    if (row.kind == kind) return &row;
  }
  return nullptr;
}

constexpr int kMaxCopyDepth = 16;

RetainPtr<CFTypeRef> DeepCopy(CFTypeRef value, int depth);

void CopyPairs(CFDictionaryRef from, CFMutableDictionaryRef to, int depth) {
  const auto count = static_cast<size_t>(CFDictionaryGetCount(from));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(from, keys.data(), values.data());
  for (size_t index = 0; index < count; ++index) {
    const RetainPtr<CFTypeRef> copy = DeepCopy(values[index], depth + 1);
    if (copy) CFDictionarySetValue(to, keys[index], copy.get());
  }
}

// Containers and texts are copied, so that the library may go on with its own; numbers never change. What is
// nested deeper than anything the library sends is left out.
RetainPtr<CFTypeRef> DeepCopy(CFTypeRef value, int depth) {
  if (depth > kMaxCopyDepth) return {};
  if (CFStringRef text = dynamicCF<CFStringRef>(value)) {
    return adoptCF(static_cast<CFTypeRef>(CFStringCreateCopy(nullptr, text)));
  }
  if (CFDictionaryRef dictionary = dynamicCF<CFDictionaryRef>(value)) {
    const RetainPtr<CFMutableDictionaryRef> copy = adoptCF(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    CopyPairs(dictionary, copy.get(), depth);
    return adoptCF(static_cast<CFTypeRef>(CFDictionaryCreateCopy(nullptr, copy.get())));
  }
  if (CFArrayRef array = dynamicCF<CFArrayRef>(value)) {
    const RetainPtr<CFMutableArrayRef> copy =
        adoptCF(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index) {
      const RetainPtr<CFTypeRef> element = DeepCopy(CFArrayGetValueAtIndex(array, index), depth + 1);
      if (element) CFArrayAppendValue(copy.get(), element.get());
    }
    return adoptCF(static_cast<CFTypeRef>(CFArrayCreateCopy(nullptr, copy.get())));
  }
  return retainCF(value);
}

}  // namespace

CoreAgentPluginNotification::CoreAgentPluginNotification()
    : m_dictionary(adoptCF(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                     &kCFTypeDictionaryValueCallBacks))) {}

void CoreAgentPluginNotification::SetFlag(CFStringRef key, bool value) {
  CFDictionarySetValue(m_dictionary.get(), key, value ? kCFBooleanTrue : kCFBooleanFalse);
}

std::unique_ptr<CoreAgentPluginNotification> CoreAgentPluginNotification::Create(
    PluginInterface::ECallbackKind kind, void* data) {
  const KindRow* row = FindKind(kind);
  if (row == nullptr) return nullptr;
  const bool wantsDictionary = row->payload == Payload::kPairs || row->payload == Payload::kPreviews;
  if (row->payload != Payload::kNone &&
      (data == nullptr || (wantsDictionary && dynamicCF<CFDictionaryRef>(data) == nullptr))) {
    OutputIndentedAndFormattedString(0, "WARNING:  notification of kind %d came without its data", kind);
    return nullptr;
  }

  auto notification = std::make_unique<CoreAgentPluginNotification>();
  CFMutableDictionaryRef dictionary = notification->GetDictionary();
  notification->SetFlag(row->key, true);
  switch (row->payload) {
    case Payload::kNone:
      break;
    case Payload::kOnlineFlag:
      notification->SetFlag(row->key, *static_cast<const bool*>(data));
      break;
    case Payload::kFlag:
      notification->SetFlag(kPluginNotification_Enabled, *static_cast<const bool*>(data));
      break;
    case Payload::kFontID: {
      const int64_t fontID = *static_cast<const unsigned int*>(data);
      const RetainPtr<CFNumberRef> number = adoptCF(CFNumberCreate(nullptr, kCFNumberSInt64Type, &fontID));
      CFDictionarySetValue(dictionary, kPluginNotification_FontActivation_Font_ID, number.get());
      break;
    }
    case Payload::kPairs:
      CopyPairs(dynamicCF<CFDictionaryRef>(data), dictionary, 0);
      break;
    case Payload::kPreviews:
      CFDictionarySetValue(dictionary, kPluginNotification_FontPNGs, DeepCopy(data, 0).get());
      break;
  }
  return notification;
}

int CoreAgentNotificationCallback(PluginInterface::ECallbackKind kind, void* data) {
  try {
    if (FontManagerInterface::GetFontManager() == nullptr) {
      OutputIndentedAndFormattedString(0, "WARNING:  CoreAgentInterface::GetFontManager() returned NULL.");
      return 0;
    }
    // The manager may go at any moment on the other thread; the queue stays as long as it is held here.
    const std::shared_ptr<CoreAgentPluginNotificationQueue> queue = CoreAgentInterface::CurrentQueue();
    if (queue != nullptr) queue->EnqueueNotification(CoreAgentPluginNotification::Create(kind, data));
  } catch (const std::exception& error) {
    OutputIndentedAndFormattedString(0, "*** UH-OH, a notification of kind %d was lost:  %s", kind,
                                     error.what());
  }
  return 0;
}
