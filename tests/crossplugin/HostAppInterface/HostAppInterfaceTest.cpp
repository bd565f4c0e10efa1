#include <gtest/gtest.h>

#include <functional>

#include "HostAppInterface/HostAppInterface.h"
#include "HostAppInterface/InDesignInterface.h"
#include "Memory/CFVector.h"
#include "support/RecordingPanel.h"

namespace {

class HostAppInterfaceTest : public testing::Test {
 protected:
  ~HostAppInterfaceTest() override { InDesignInterface::SetMenuBuilder(nullptr); }

  const RecordingPanel::Registration panel;
};

TEST_F(HostAppInterfaceTest, EachEventBecomesThePushOfItsKind) {
  const auto pairs = MakeDictionary();
  CFDictionarySetValue(pairs.get(), CFSTR("text"), CFSTR("Importing"));
  CFDictionaryRef progress = pairs.get();
  const struct {
    std::function<void(HostAppInterface&)> event;
    std::vector<std::string> pushed;
  } kCases[] = {
      {[](auto& host) { host.HandlePanelDataChanged(); }, {"DataChanged"}},
      {[](auto& host) { host.SetLoggedInState(true, EServerType::kNotOwnLogin); },
       {"LoggedInStateChanged 3"}},
      {[](auto& host) { host.SetIsOnline(true); }, {"OnlineStateChanged 1"}},
      {[](auto& host) { host.FontActivated(7); }, {"FontActivated 7"}},
      {[](auto& host) { host.FontDeactivated(7); }, {"FontDeactivated 7"}},
      {[](auto& host) { host.FontMissing(7); }, {"FontMissing 7"}},
      {[](auto& host) { host.DesignActivationFailedComplianceCheck(7); }, {"FontNonCompliant 7"}},
      {[progress](auto& host) { host.BulkReplicationProgress(progress); }, {"BulkProgress 1"}},
      {[](auto& host) { host.BulkReplicationStopped(); }, {"BulkStopped"}},
      {[progress](auto& host) { host.IncrementalReplicationProgress(progress); }, {"IncrementalProgress 1"}},
      {[](auto& host) { host.IncrementalReplicationStopped(); }, {"IncrementalStopped"}},
      {[progress](auto& host) { host.GoogleReplicationProgress(progress); }, {"GoogleProgress 1"}},
      {[](auto& host) { host.GoogleReplicationStopped(); }, {"GoogleStopped"}},
      {[progress](auto& host) { host.FontServerReplicationProgress(progress); }, {"FontServerProgress 1"}},
      {[](auto& host) { host.FontServerReplicationStopped(); }, {"FontServerStopped"}},
      {[](auto& host) { host.GoogleWebFontsEnabled(false); }, {"GoogleWebFontsEnabled 0"}},
      {[progress](auto& host) { host.PreviewPNGsRendered(progress); }, {"FontImages 1"}},
      {[](auto& host) { host.SmartListsChanged(); }, {"SmartListsChanged"}},
      {[](auto& host) { host.OfflineDownloadFinished(); }, {"OfflineDownloadFinished"}},
      {[](auto& host) { host.RebuildWorkgroupsMenu(); }, {"CheckForTypekit"}},
      // Nothing comes of these in this host.
      {[progress](auto& host) { host.PrismletReplicationProgress(progress); }, {}},
      {[](auto& host) { host.PrismletReplicationStopped(); }, {}},
      {[](auto& host) { host.SetCanExportFontsForDocument(true); }, {}},
      {[](auto& host) { host.SetMissingFontsDialogNeeded(); }, {}},
  };
  HostAppInterface* host = HostAppInterface::GetHostAppInterface();
  ASSERT_NE(dynamic_cast<InDesignInterface*>(host), nullptr);
  for (const auto& row : kCases) {
    row.event(*host);
    EXPECT_EQ(panel->Take(), row.pushed);
  }
  EXPECT_FALSE(host->CanExportFontsForDocument());
}

TEST_F(HostAppInterfaceTest, TheMenuIsBuiltBeforeThePanelsLook) {
  static RecordingPanel* sPanel;
  sPanel = panel.operator->();
  InDesignInterface::SetMenuBuilder([] { sPanel->calls.push_back("menu"); });
  HostAppInterface::GetHostAppInterface()->RebuildWorkgroupsMenu();
  EXPECT_EQ(panel->Take(), (std::vector<std::string>{"menu", "CheckForTypekit"}));
}

TEST_F(HostAppInterfaceTest, OnlyTheGeneralHostKeepsAccountOfFonts) {
  GeneralInterface general;
  general.FontActivated(7);
  EXPECT_TRUE(general.FontActivationRecognized(7));
  general.FontDeactivated(7);
  EXPECT_FALSE(general.FontActivationRecognized(7));
  EXPECT_EQ(panel->Take(), (std::vector<std::string>{"FontActivated 7", "FontDeactivated 7"}));

  InDesignInterface inDesign;
  inDesign.FontActivated(7);
  EXPECT_FALSE(inDesign.FontActivationRecognized(7));
}

}  // namespace
