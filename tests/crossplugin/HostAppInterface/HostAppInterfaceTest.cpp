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
