#include "PendingActivationTracker.h"
#include "PlugInTest.h"

namespace {

using Names = std::vector<std::string>;

/// With a way to the activated fonts, which nothing in the plug-in fills.
class OpenTracker : public PendingActivationTracker {
 public:
  using PendingActivationTracker::PendingActivationTracker;
  CFMutableArrayRef GetPendingActivatedFonts() {
    if (!m_PendingActivatedFonts) m_PendingActivatedFonts = MakeArray();
    return m_PendingActivatedFonts.get();
  }
};

class PendingActivations : public PlugInTest {
 protected:
  static void Add(CFMutableArrayRef list, const std::string& name, unsigned int fontID) {
    CFArrayAppendValue(list, MakeMatchedFont(name, fontID).get());
  }

  OpenTracker tracker;
};

TEST_F(PendingActivations, EveryFontIsCheckedOnceAndDropped) {
  host.fonts = {"StillThere"};
  Add(tracker.GetPendingDeactivatedFonts(), "StillThere", 1);
  Add(tracker.GetPendingDeactivatedFonts(), "Gone", 2);
  EXPECT_TRUE(tracker.CheckPendingActivationChanges());
  EXPECT_EQ(CFArrayGetCount(tracker.GetPendingDeactivatedFonts()), 0);
  EXPECT_TRUE(manager.deactivateOneCalls.empty());
  EXPECT_TRUE(tracker.CheckPendingActivationChanges()) << "on empty lists";
}

TEST_F(PendingActivations, ARecordWithoutNameOrIDStays) {
  Add(tracker.GetPendingDeactivatedFonts(), "A", 1);
  CFArrayAppendValue(tracker.GetPendingDeactivatedFonts(), MakeFontRecord({{kGM_DatabaseIDKey, "2"}}).get());
  CFArrayAppendValue(tracker.GetPendingDeactivatedFonts(), CFSTR("no record"));
  Add(tracker.GetPendingDeactivatedFonts(), "NoID", 0);
  EXPECT_TRUE(tracker.CheckPendingActivationChanges());
  EXPECT_EQ(FontNamesOf(tracker.GetPendingDeactivatedFonts()), (Names{"-", "-", "NoID"}));
}

TEST_F(PendingActivations, NothingIsCheckedWithoutAHostOrAFontManager) {
  Add(tracker.GetPendingDeactivatedFonts(), "A", 1);
  HornbeamPlugIn::GetInstance().SetSession(nullptr);
  EXPECT_TRUE(tracker.CheckPendingActivationChanges());
  EXPECT_EQ(CFArrayGetCount(tracker.GetPendingDeactivatedFonts()), 1);
}

TEST_F(PendingActivations, WithRetriesARequestIsRepeatedUntilTheHostFollows) {
  OpenTracker retrying(2);
  host.fonts = {"Out"};
  Add(retrying.GetPendingDeactivatedFonts(), "Out", 5);
  EXPECT_FALSE(retrying.CheckPendingActivationChanges());
  EXPECT_EQ(manager.deactivateOneCalls, std::vector<unsigned int>{5});
  host.fonts.clear();
  EXPECT_TRUE(retrying.CheckPendingActivationChanges());
  EXPECT_EQ(CFArrayGetCount(retrying.GetPendingDeactivatedFonts()), 0);

  Add(retrying.GetPendingActivatedFonts(), "In", 6);
  EXPECT_FALSE(retrying.CheckPendingActivationChanges());
  EXPECT_FALSE(retrying.CheckPendingActivationChanges());
  EXPECT_EQ(manager.deactivateOneCalls, (std::vector<unsigned int>{5, 6, 6}));
  EXPECT_TRUE(retrying.CheckPendingActivationChanges()) << "given up";
  EXPECT_EQ(CFArrayGetCount(retrying.GetPendingActivatedFonts()), 0);
}

TEST_F(PendingActivations, WhilePendingTheAlertsStayQuiet) {
  InMemoryDocument document("A.idml");
  Add(HBIndesignPluginGlobals::GetPendingDeactivatedFonts(), "Out", 5);
  host.fonts = {"Out"};
  EXPECT_FALSE(host.Send(263, document)) << "without retries nothing stays pending";
  EXPECT_EQ(CFArrayGetCount(HBIndesignPluginGlobals::GetPendingDeactivatedFonts()), 0);
}

}  // namespace
