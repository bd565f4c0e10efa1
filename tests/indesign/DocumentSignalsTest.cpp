#include "PlugInTest.h"

namespace {

using testing::Test;
using Names = std::vector<std::string>;

class DocumentSignals : public PlugInTest {
 protected:
  DocumentSignals() {
    brochure.Use("Acme Sans", {{"Regular", "AcmeSans-Regular"}, {"Bold", "AcmeSans-Bold"}});
  }

  InMemoryDocument brochure{"Brochure.idml"};
};

TEST_F(DocumentSignals, OpeningActivatesAndAClosePreferenceGivesBack) {
  AddFont("AcmeSans-Regular");
  AddFont("AcmeSans-Bold", true);
  loom.SetPreference("CloseFontsOnDocClose", 1);

  EXPECT_FALSE(host.Open(brochure)) << "one of two fonts was active before, so not all were brought in";
  EXPECT_EQ(host.matched, (Names{"AcmeSans-Regular 1", "AcmeSans-Bold 2*"}));
  EXPECT_EQ(brochure.refreshes, 1);
  EXPECT_EQ(brochure.usageUpdates, 1);
  EXPECT_TRUE(HBIndesignPluginGlobals::ExecuteTimer);
  EXPECT_TRUE(HBIndesignPluginGlobals::RefreshFontStuff);
  EXPECT_TRUE(HBIndesignPluginGlobals::CheckHostFontAvailability);

  host.Close(brochure);
  EXPECT_EQ(host.deactivated, Names{"AcmeSans-Regular"});
  EXPECT_EQ(manager.deactivateCalls, (std::vector<std::vector<unsigned int>>{{1}}));
  EXPECT_EQ(host.commandsDone, std::vector<ClassID>{15883});
  EXPECT_EQ(HBIndesignPluginGlobals::GetNoOfDocumentsInDocumentList(), 0);
  EXPECT_TRUE(HBIndesignPluginGlobals::GetUIDRef().IsNull());
}

struct AlertCase {
  const char* name;
  Names library;
  Names active;
  std::vector<Facade::ILinkFacade::LinkStatus> links;
  bool isClone;
  bool suppressed;
};

class AlertDecision : public DocumentSignals, public testing::WithParamInterface<AlertCase> {};

TEST_P(AlertDecision, AfterTheOpen) {
  const AlertCase& row = GetParam();
  for (const std::string& font : row.library) AddFont(font);
  for (const std::string& font : row.active) AddFont(font, true);
  brochure.linkStates = row.links;
  EXPECT_EQ(host.Open(brochure, {.isClone = row.isClone}), row.suppressed);
}

using Link = Facade::ILinkFacade;
const Names kBothFonts = {"AcmeSans-Regular", "AcmeSans-Bold"};

INSTANTIATE_TEST_SUITE_P(
    Rows, AlertDecision,
    testing::Values(
        AlertCase{"AllFontsOnTheirWay", kBothFonts, {}, {}, false, true},
        AlertCase{"LinksInOrder", kBothFonts, {}, {Link::kUpToDate, Link::kEmbedded}, false, true},
        AlertCase{"OneFontMissing", {"AcmeSans-Regular"}, {}, {}, false, false},
        AlertCase{"NothingHadToBeActivated", {}, kBothFonts, {}, false, false},
        AlertCase{"ALinkIsMissing", kBothFonts, {}, {Link::kUpToDate, Link::kMissing}, false, false},
        AlertCase{"ALinkIsOutOfDate", kBothFonts, {}, {Link::kOutOfDate}, false, false},
        AlertCase{"AClone", kBothFonts, {}, {}, true, false}),
    [](const auto& info) { return info.param.name; });

TEST_F(DocumentSignals, BeforeTheOpenAlertsStayQuietWhenTheUserResolvesFontsHimself) {
  EXPECT_FALSE(host.Send(kBeforeOpenDocSignalResponderService, brochure)) << "with the best match picked";
  loom.SetPreference("PickBestMatch", 0);
  EXPECT_TRUE(host.Send(kBeforeOpenDocSignalResponderService, brochure));
  EXPECT_FALSE(host.Send(kBeforeOpenDocSignalResponderService, brochure, {.hasData = false}));
  brochure.linkStates = {Facade::ILinkFacade::kMissing};
  EXPECT_FALSE(host.Send(kBeforeOpenDocSignalResponderService, brochure));
}

TEST_F(DocumentSignals, ADocumentBeingTakenDownHasNoLinksToAskFor) {
  loom.SetPreference("PickBestMatch", 0);
  brochure.hasDataBase = false;
  EXPECT_TRUE(host.Send(kBeforeOpenDocSignalResponderService, brochure));
  brochure.Vanish();
  EXPECT_FALSE(host.Send(kBeforeOpenDocSignalResponderService, brochure));
}

TEST_F(DocumentSignals, ASecondOpenInsideTheFirstDoesNothing) {
  AddFont("AcmeSans-Regular");
  manager.duringAgentCall = [&] { host.Send(kDuringOpenDocSignalResponderService, brochure); };
  host.Open(brochure);
  EXPECT_EQ(brochure.usageUpdates, 1);
  EXPECT_EQ(HBIndesignPluginGlobals::GetNoOfDocumentsInDocumentList(), 1);
}

TEST_F(DocumentSignals, AnExceptionOfTheFontManagerStaysHereAndTheDocumentCanBeOpenedAgain) {
  manager.duringAgentCall = [] { throw std::runtime_error("gone"); };
  EXPECT_NO_THROW(host.Send(kDuringOpenDocSignalResponderService, brochure));
  manager.duringAgentCall = nullptr;
  AddFont("AcmeSans-Regular");
  host.Send(kDuringOpenDocSignalResponderService, brochure);
  EXPECT_EQ(host.matched, Names{"AcmeSans-Regular 1"});
}

TEST_F(DocumentSignals, WhileThePlugInIsOffDocumentsGoThroughUntracked) {
  const std::vector<std::function<void()>> offs = {
      [&] { loom.SetPreference("EnablePlugin", 0); },
      [] { HornbeamGlobals::SetPluginServicesEnabled(false); },
      [] { HornbeamGlobals::SetLoggedIn(false); },
      [] { HornbeamGlobals::SetUserHasWorkgroups(false); },
      [&] { manager.loggedIn = false; },
      [&] { loom.Loom().DestroyFramework(); },
  };
  AddFont("AcmeSans-Regular");
  for (size_t i = 0; i < offs.size(); ++i) {
    SCOPED_TRACE(i);
    offs[i]();
    host.Open(brochure);
    EXPECT_EQ(ElementOf(brochure), nullptr);
    EXPECT_TRUE(host.matched.empty());
    // Back on for the next row, as far as it goes back.
    loom.SetPreference("EnablePlugin", 1);
    HornbeamGlobals::SetPluginServicesEnabled(true);
    HornbeamGlobals::SetLoggedIn(true);
    HornbeamGlobals::SetUserHasWorkgroups(true);
    manager.loggedIn = true;
  }
}

TEST_F(DocumentSignals, ClosingADocumentThatWasNeverSeenTouchesNoFont) {
  AddFont("AcmeSans-Regular");
  host.Close(brochure);
  EXPECT_TRUE(manager.deactivateCalls.empty());
  EXPECT_TRUE(host.commandsDone.empty());
}

TEST_F(DocumentSignals, AgentGoneBetweenOpenAndCloseStillRetiresTheDocument) {
  AddFont("AcmeSans-Regular");
  loom.SetPreference("CloseFontsOnDocClose", 1);
  host.Open(brochure);
  manager.connected = false;
  host.Close(brochure);
  EXPECT_TRUE(manager.deactivateCalls.empty());
  EXPECT_TRUE(host.deactivated.empty());
  EXPECT_EQ(HBIndesignPluginGlobals::GetNoOfDocumentsInDocumentList(), 0);
}

TEST_F(DocumentSignals, ANewDocumentActivatesNothing) {
  AddFont("AcmeSans-Regular");
  host.Send(kDuringNewDocSignalResponderService, brochure);
  EXPECT_NE(ElementOf(brochure), nullptr);
  EXPECT_TRUE(HBIndesignPluginGlobals::ExecuteTimer);
  EXPECT_TRUE(host.matched.empty());
}

TEST_F(DocumentSignals, AChangedSeedIsBroadcastAfterTheClose) {
  host.Open(brochure);
  host.Close(brochure);
  EXPECT_TRUE(host.changes.empty());
  host.Send(kDuringOpenDocSignalResponderService, brochure);
  ++host.seed;
  host.Close(brochure);
  EXPECT_EQ(host.changes, std::vector<ClassID>{16074});
}

TEST_F(DocumentSignals, AnAddedLinkIsLeftToTheIdleTask) {
  loom.SetPreference("SupportEmbeddedObjects", 0);
  host.Send(kAfterAddLinkSignalResponderService, brochure);
  EXPECT_FALSE(HBIndesignPluginGlobals::EmbeddedDocJustAdded);
  loom.SetPreference("SupportEmbeddedObjects", 1);
  host.Send(kAfterAddLinkSignalResponderService, brochure);
  EXPECT_TRUE(HBIndesignPluginGlobals::EmbeddedDocJustAdded);
}

TEST_F(DocumentSignals, ASaveHandsTheFontsToTheFontManagerUnlessTheFileCarriesThem) {
  loom.SetPreference("EnableGlyphMark", 0);
  HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesignCC2020"));
  for (const auto& [before, after] : std::vector<std::pair<ServiceID, ServiceID>>{
           {kBeforeSaveDocSignalResponderService, kAfterSaveDocSignalResponderService},
           {kBeforeSaveAsDocSignalResponderService, kAfterSaveAsDocSignalResponderService},
           {kBeforeSaveACopyDocSignalResponderService, kAfterSaveACopyDocSignalResponderService}}) {
    library.calls.clear();
    host.Send(before, brochure);
    ASSERT_NE(ElementOf(brochure), nullptr) << "made where there was none";
    EXPECT_EQ(FontNamesOf(ElementOf(brochure)->GetCachedFontsInDocument()), kBothFonts);
    host.Send(after, brochure);
    EXPECT_EQ(library.LastCall("SaveDocumentFonts"),
              "SaveDocumentFonts('/documents/Brochure.idml', 'Fake Host', 'id', *)");
  }

  loom.SetPreference("EnableGlyphMark", 1);
  library.calls.clear();
  host.Send(kBeforeSaveDocSignalResponderService, brochure);
  host.Send(kAfterSaveDocSignalResponderService, brochure);
  EXPECT_EQ(library.CountCalls("SaveDocumentFonts"), 0);
}

TEST_F(DocumentSignals, ADocumentWithoutAFileIsNotWritten) {
  loom.SetPreference("EnableGlyphMark", 0);
  HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesignCC2020"));
  brochure.file = IDFile();
  AddFont("AcmeSans-Regular");
  host.Open(brochure);
  EXPECT_TRUE(host.matched.empty());
  EXPECT_TRUE(HBIndesignPluginGlobals::RefreshFontStuff) << "the rest of the open still runs";
  host.Send(kBeforeSaveDocSignalResponderService, brochure);
  host.Send(kAfterSaveDocSignalResponderService, brochure);
  EXPECT_EQ(library.CountCalls("SaveDocumentFonts"), 0);
}

}  // namespace
