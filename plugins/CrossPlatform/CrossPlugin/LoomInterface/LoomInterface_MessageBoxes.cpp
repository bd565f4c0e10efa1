#include "FontManagerInterface/FontManagerInterface.h"
#include "LoomInterface/LoomInterface.h"
#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

namespace {

constexpr int kOKButton = 1;
constexpr int kTryAgainButtons = 2;
constexpr int kFirstButton = 1;

LoomInterface::HostMessageProc sHostMessageProc = nullptr;

// Whether the texts should speak of the edition without a server. A manager that can't be asked counts as
// one.
bool IsStandalone() {
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  return manager == nullptr || manager->RunningStandalone();
}

}  // namespace

int LoomInterface::ShowMessageBox(CFStringRef headerKey, CFStringRef messageKey, int buttons) {
  if (!IsValid() || !m_osData->functions.pfLoomShowMessageBox) return 0;
  return m_osData->functions.pfLoomShowMessageBox(headerKey, messageKey, buttons);
}

void LoomInterface::ShowFontManagerNotFoundMessageBox() {
  ShowMessageBox(CFSTR("FontManagerNotFoundHeader"), CFSTR("FontManagerNotFoundMessage"), kOKButton);
}

void LoomInterface::ShowHornbeamOldVersionMessageBox() {
  ShowMessageBox(CFSTR("HornbeamOldVersionHeader"), CFSTR("HornbeamOldVersionMessage"), kOKButton);
}

void LoomInterface::ShowUnsupportedHostAppMessageBox() {
  ShowMessageBox(CFSTR("PluginWillBeDisabled"), CFSTR("UnsupportedHostAppMessage"), kOKButton);
}

void LoomInterface::ShowNotLoggedInMessageBox(bool offerLogin) {
  ShowMessageBox(
      CFSTR("NotLoggedInHeader"),
      offerLogin ? CFSTR("NotLoggedInOfferLoginMessage") : CFSTR("NotLoggedInPluginDisabledMessage"),
      kOKButton);
}

bool LoomInterface::ShowCoreAgentMissingMessageBox() {
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  if (manager == nullptr) return false;
  const bool standalone = manager->RunningStandalone();
  return ShowMessageBox(standalone ? CFSTR("HSCoreAgentMissingHeader") : CFSTR("SYCoreAgentMissingHeader"),
                        standalone ? CFSTR("HSCoreAgentMissingMessage") : CFSTR("SYCoreAgentMissingMessage"),
                        kTryAgainButtons) == kFirstButton;
}

void LoomInterface::ShowGoOnlineErrorMessageBox() {
  ShowMessageBox(CFSTR("GoOnlineErrorHeader"), CFSTR("GoOnlineErrorMessage"), kOKButton);
}

void LoomInterface::ShowNoWorkgroupsMessageBox() {
  const bool standalone = IsStandalone();
  ShowMessageBox(standalone ? CFSTR("NoLibrariesHeader") : CFSTR("NoWorkgroupsHeader"),
                 standalone ? CFSTR("NoLibrariesMessage") : CFSTR("NoWorkgroupsMessage"), kOKButton);
}

void LoomInterface::ShowCannotExportMessageBox() {
  ShowMessageBox(CFSTR("CannotExportHeader"), CFSTR("CannotExportMessage"), kOKButton);
}

void LoomInterface::ShowFontsMissingForExportMessageBox(bool offline) {
  ShowMessageBox(CFSTR("MissingFontsExportHeader"),
                 offline ? CFSTR("MissingFontsOfflineExportMessage") : CFSTR("MissingFontsExportMessage"),
                 kOKButton);
}

void LoomInterface::ShowSetNameTooLongMessageBox() {
  ShowMessageBox(CFSTR("SetNameTooLongHeader"), CFSTR("SetNameTooLongMessage"), kOKButton);
}

void LoomInterface::ShowCoreAgentOutOfSyncMessageBox() {
  const bool standalone = IsStandalone();
  ShowMessageBox(standalone ? CFSTR("HSCoreAgentOutOfSyncHeader") : CFSTR("SYCoreAgentOutOfSyncHeader"),
                 standalone ? CFSTR("HSCoreAgentOutOfSyncMessage") : CFSTR("SYCoreAgentOutOfSyncMessage"),
                 kOKButton);
}

void LoomInterface::ShowVaultInUseMessage(CFStringRef path) {
  ShowVaultMessage(CFSTR("CouldNotOpenVaultInUseLaunchPrefs"), path);
}

void LoomInterface::ShowVaultNotAvailableMessage(CFStringRef path) {
  ShowVaultMessage(CFSTR("CouldNotOpenVaultLaunchPrefs"), path);
}

// A box has room for a key and no arguments, so the sentence is fetched here and the path put where it says
// "%@", else behind it; the framework shows a text that is no key as it stands.
void LoomInterface::ShowVaultMessage(CFStringRef messageKey, CFStringRef path) {
  const RetainPtr<CFStringRef> sentence = adoptCF(LocalizedString(messageKey));
  const std::string pathText = XCFUtils::GetStdString(path);
  std::string text = XCFUtils::GetStdString(sentence.get());
  const size_t place = text.find("%@");
  if (place == std::string::npos) {
    text += "\n" + pathText;
  } else {
    text.replace(place, 2, pathText);
  }
  const RetainPtr<CFStringRef> message = XCFUtils::CreateString(text);
  ShowMessageBox(nullptr, message.get(), kOKButton);
}

void LoomInterface::ShowVaultNeedsUpgradeMessage() {
  ShowMessageBox(CFSTR("VaultNeedsUpgradeTitle"), CFSTR("VaultNeedsUpgradeMessage"), kOKButton);
}

void LoomInterface::ShowLoomNotFoundMessageBox() {
  const CFStringRef key = CFSTR(
      "The Talworth plug-in could not locate a running copy of the Kiln application. Auto-activation plug-in "
      "functionality will be disabled.");
  CFBundleRef bundle =
      m_bundleIdentifier ? CFBundleGetBundleWithIdentifier(m_bundleIdentifier.get()) : nullptr;
  RetainPtr<CFStringRef> text =
      bundle ? adoptCF(CFBundleCopyLocalizedString(bundle, key, key, nullptr)) : retainCF(key);
  if (sHostMessageProc != nullptr) {
    sHostMessageProc(text.get());
  } else {
    OutputIndentedAndFormattedString(0, "Loom not found:  '%s'", XCFUtils::GetStdString(text.get()).c_str());
  }
}

void LoomInterface::SetHostMessageProc(HostMessageProc proc) {
  sHostMessageProc = proc;
}
