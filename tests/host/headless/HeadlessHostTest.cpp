#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "IApplication.h"
#include "IDocFontMgr.h"
#include "IDocument.h"
#include "IFontActivityReport.h"
#include "IFontFamily.h"
#include "IUsedFontList.h"
#include "PrivateFonts.h"
#include "RecordingPlugIn.h"
#include "headless/HeadlessHost.h"
#include "support/IdmlFixture.h"
#include "support/TemporaryFolder.h"

namespace {

using headless::HeadlessHost;
using Events = std::vector<std::string>;

// DejaVu Sans is installed or not, as a test wants; Quillmere never is.
constexpr char kDocument[] = R"(=== Resources/Fonts.xml
<FontFamily Name="DejaVu Sans">
  <Font FontFamily="DejaVu Sans" FontStyleName="Book" PostScriptName="DejaVuSans"/>
  <Font FontFamily="DejaVu Sans" FontStyleName="Bold" PostScriptName="DejaVuSans-Bold"/>
</FontFamily>
=== Stories/Story_u1.xml
<CharacterStyleRange AppliedFont="DejaVu Sans" FontStyle="Bold"><Content>x</Content></CharacterStyleRange>
<CharacterStyleRange AppliedFont="Quill mere" FontStyle="Extra Bold"><Content>x</Content></CharacterStyleRange>
<CharacterStyleRange AppliedFont="DejaVu Sans" FontStyle="Book"><Content>x</Content></CharacterStyleRange>
)";

class HeadlessHostTest : public testing::Test {
 protected:
  HeadlessHostTest() {
    m_host.RegisterPlugIn(m_plugIn);
    m_sPath = IdmlFixture(kDocument).Write(m_folder.Path("a.idml"));
  }

  // What a test has hung on the plug-in refers to the test's own variables.
  void TearDown() override {
    m_plugIn.onSignal = nullptr;
    m_plugIn.onIdle = nullptr;
  }

  HeadlessHost::DocumentID Open() {
    std::string error;
    const auto document = m_host.Open(m_sPath, error);
    EXPECT_NE(document, 0u) << error;
    return document;
  }

  TemporaryFolder m_folder;
  std::string m_sPath;
  PrivateFonts m_fonts;
  RecordingPlugIn m_plugIn;
  HeadlessHost m_host;
};

TEST_F(HeadlessHostTest, SendsTheSignalsOfALifeInOrder) {
  m_host.Start();
  const auto document = Open();
  std::string error;
  EXPECT_TRUE(m_host.Save(document, error)) << error;
  m_host.Close(document);
  m_host.Close(document);
  EXPECT_FALSE(m_host.Save(document, error));
  m_host.Shutdown();
  EXPECT_EQ(m_plugIn.events, (Events{"startup", "before open", "during open", "after open", "before save",
                                     "after save", "before close", "after close", "shutdown"}));
}

TEST_F(HeadlessHostTest, ClosesWhatIsOpenBeforeItGoes) {
  m_host.Start();
  Open();
  m_host.Shutdown();
  m_host.Shutdown();
  EXPECT_EQ(m_plugIn.events.back(), "shutdown");
  EXPECT_EQ(m_plugIn.events[m_plugIn.events.size() - 2], "after close");
  EXPECT_EQ(GetExecutionContextSession(), nullptr);
}

TEST_F(HeadlessHostTest, ADocumentThatCantBeReadIsNotSignalled) {
  std::string error;
  EXPECT_EQ(m_host.Open(m_folder.Write("bad.idml", "x"), error), 0u);
  EXPECT_EQ(error, m_folder.Path("bad.idml") + ": not a zip archive");
  EXPECT_TRUE(m_plugIn.events.empty());
}

TEST_F(HeadlessHostTest, TellsUsedFontsInTheOrderFound) {
  m_fonts.Add("DejaVuSans-Bold.ttf");
  const auto document = Open();
  const auto fonts = m_host.UsedFonts(document);
  ASSERT_EQ(fonts.size(), 3u);
  EXPECT_EQ(fonts[0].postScriptName, "DejaVuSans-Bold");
  EXPECT_TRUE(fonts[0].available);
  EXPECT_EQ(fonts[1].postScriptName, "Quillmere-ExtraBold");
  EXPECT_FALSE(fonts[1].hasRealName);
  EXPECT_EQ(fonts[2].postScriptName, "DejaVuSans");
  EXPECT_TRUE(fonts[2].hasRealName);
  EXPECT_FALSE(fonts[2].available);
  m_fonts.Add("DejaVuSans.ttf");
  EXPECT_TRUE(m_host.UsedFonts(document)[2].available);
  m_host.Close(document);
  EXPECT_TRUE(m_host.UsedFonts(document).empty());
}

TEST_F(HeadlessHostTest, TheLastAnswerDecidesOnTheAlert) {
  ServiceID suppressAt = kAfterOpenDocSignalResponderService;
  m_plugIn.onSignal = [&](ServiceID service, IDocumentSignalData& data) {
    if (service != suppressAt) return;
    data.Set(data.GetFile(), data.IsClone(), data.GetDocument(), IDocumentSignalData::kSuppressUI);
  };
  const auto quiet = m_host.AlertAtOpen(Open());
  EXPECT_TRUE(quiet.suppressed);
  EXPECT_FALSE(quiet.IsShown());
  suppressAt = kBeforeOpenDocSignalResponderService;
  const auto loud = m_host.AlertAtOpen(Open());
  EXPECT_TRUE(loud.IsShown());
  ASSERT_EQ(loud.missingFonts.size(), 3u);
  EXPECT_EQ(loud.missingFonts[1].family, "Quill mere");
}

TEST_F(HeadlessHostTest, TheAlertCountsFontsThatCameDuringTheOpen) {
  m_plugIn.onSignal = [&](ServiceID service, IDocumentSignalData&) {
    if (service != kDuringOpenDocSignalResponderService) return;
    m_fonts.Add("DejaVuSans-Bold.ttf");
    m_fonts.Add("DejaVuSans.ttf");
  };
  const auto alert = m_host.AlertAtOpen(Open());
  ASSERT_EQ(alert.missingFonts.size(), 1u);
  EXPECT_EQ(alert.missingFonts[0].postScriptName, "Quillmere-ExtraBold");
}

TEST_F(HeadlessHostTest, TheAlertNamesMissingLinks) {
  const std::string path = IdmlFixture("=== Spreads/S.xml\n<Link LinkResourceURI='file:/no%20where.eps'/>")
                               .Write(m_folder.Path("l.idml"));
  std::string error;
  const auto alert = m_host.AlertAtOpen(m_host.Open(path, error));
  EXPECT_EQ(alert.missingLinks, Events{"/no where.eps"});
  EXPECT_TRUE(alert.IsShown());
}

TEST_F(HeadlessHostTest, InterfacesOutliveTheirDocument) {
  m_fonts.Add("DejaVuSans-Oblique.ttf");
  UIDRef ref;
  m_plugIn.onSignal = [&](ServiceID, IDocumentSignalData& data) { ref = data.GetDocument(); };
  const auto document = Open();
  const InterfacePtr<IDocument> opened(ref, UseDefaultIID());
  const InterfacePtr<IUsedFontList> list(opened, UseDefaultIID());
  EXPECT_EQ(list->GetNthVariantStyle(0, 2), kNullString) << "beyond the last";
  const InterfacePtr<IFontFamily> family(ref.GetDataBase(), list->GetNthFamilyUID(0), UseDefaultIID());
  EXPECT_EQ(family->GetFacePostscriptName("Bold", true, true), "DejaVuSans-Bold");
  EXPECT_EQ(family->GetFacePostscriptName("Bold", true, false), kNullString);
  EXPECT_EQ(family->GetFacePostscriptName("Oblique", true, false), "DejaVuSans-Oblique");
  const InterfacePtr<IDocFontMgr> families(opened->GetDocWorkSpace(), UseDefaultIID());
  EXPECT_EQ(families->GetFamilyUID("DejaVu Sans", "Bold", false, true), list->GetNthFamilyUID(0));
  EXPECT_FALSE(families->GetFamilyUID("DejaVu Sans", "Black", false, true).IsValid());
  m_host.Close(document);
  EXPECT_EQ(opened->GetDataBase(), nullptr);
  EXPECT_EQ(family->GetFaceCount(), 3);
}

TEST_F(HeadlessHostTest, KeepsWhatIsReportedOfEachDocument) {
  m_plugIn.onSignal = [&](ServiceID service, IDocumentSignalData& data) {
    const InterfacePtr<IFontActivityReport> report(GetExecutionContextSession(), UseDefaultIID());
    const UIDRef document = data.GetDocument();
    if (service == kDuringOpenDocSignalResponderService) {
      report->ReportMatched(document, "A", 7, false);
      report->ReportMatched(document, "B", 8, true);
      report->ReportMatched(document, "A", 9, false);
      report->ReportProblem(document, "C");
      report->ReportProblem(UIDRef(), "D");
    } else if (service == kAfterCloseDocSignalResponderService) {
      report->ReportDeactivated(document, "A");
    }
  };
  const auto first = Open();
  const auto second = Open();
  m_host.Close(first);
  const auto activity = m_host.Activity(first);
  ASSERT_EQ(activity.matched.size(), 2u);
  EXPECT_EQ(activity.matched[0].databaseID, 9u);
  EXPECT_TRUE(activity.matched[1].wasActive);
  EXPECT_EQ(activity.problems, Events{"C"});
  EXPECT_EQ(activity.deactivated, Events{"A"});
  EXPECT_TRUE(m_host.Activity(second).deactivated.empty());
}

TEST_F(HeadlessHostTest, TheFrontDocumentIsTheOneOpenedLast) {
  const auto front = [] {
    const InterfacePtr<IApplication> application(GetExecutionContextSession()->QueryApplication());
    return application->GetFrontDocument();
  };
  EXPECT_TRUE(front().IsNull());
  const auto first = Open();
  const UIDRef firstRef = front();
  const auto second = Open();
  EXPECT_NE(front(), firstRef);
  m_host.Close(second);
  EXPECT_EQ(front(), firstRef);
  m_host.Close(first);
  EXPECT_TRUE(front().IsNull());
}

TEST_F(HeadlessHostTest, StoresAttributesOnSaveAndGivesThemToTheNextOpen) {
  std::string seen;
  m_plugIn.onSignal = [&](ServiceID service, IDocumentSignalData& data) {
    const InterfacePtr<RecordingPlugIn::Attribute> attribute(data.GetDocument(), UseDefaultIID());
    if (service == kBeforeOpenDocSignalResponderService) seen = attribute->text;
    if (service == kBeforeSaveDocSignalResponderService) attribute->text = std::string("slug\0bytes", 10);
  };
  const auto document = Open();
  EXPECT_EQ(seen, "");
  std::string error;
  ASSERT_TRUE(m_host.Save(document, error)) << error;
  const auto written = std::filesystem::last_write_time(m_sPath);
  ASSERT_TRUE(m_host.Save(document, error)) << error;
  EXPECT_EQ(std::filesystem::last_write_time(m_sPath), written) << "nothing had changed";
  m_host.Close(document);
  Open();
  EXPECT_EQ(seen, std::string("slug\0bytes", 10));
  std::filesystem::remove(m_sPath);
  m_plugIn.onSignal = [](ServiceID service, IDocumentSignalData& data) {
    const InterfacePtr<RecordingPlugIn::Attribute> attribute(data.GetDocument(), UseDefaultIID());
    if (service == kBeforeSaveDocSignalResponderService) attribute->text = "other";
  };
  EXPECT_FALSE(m_host.Save(m_host.OpenDocuments().front(), error));
  EXPECT_EQ(m_plugIn.events.back(), "after save");
}

TEST_F(HeadlessHostTest, IdleTasksRunAgainAfterTheirDelayUntilTheyDecline) {
  int runs = 0;
  m_plugIn.onIdle = [&runs](uint32) { return ++runs < 3 ? 1 : IIdleTask::kNeverAgain; };
  m_host.Start();
  while (runs < 3) m_host.RunIdle(5);
  m_host.RunIdle(0);
  EXPECT_EQ(runs, 3);
}

TEST_F(HeadlessHostTest, AnIdleTaskThatWaitsForTheFlagsRunsWhenTheUserDoesSomething) {
  int runs = 0;
  m_plugIn.onIdle = [&runs](uint32) {
    ++runs;
    return IIdleTask::kOnFlagChange;
  };
  m_host.Start();
  while (runs < 1) m_host.RunIdle(5);
  m_host.RunIdle(0);
  EXPECT_EQ(runs, 1);
  Open();
  while (runs < 2) m_host.RunIdle(5);
  EXPECT_EQ(runs, 2);
}

TEST_F(HeadlessHostTest, AnIdleTaskMayTakeItselfAwayAndIsNotRunWhileItRuns) {
  int runs = 0;
  m_plugIn.onIdle = [&](uint32) {
    ++runs;
    const InterfacePtr<IIdleTask> task(GetExecutionContextSession(), UseDefaultIID());
    task->InstallTask(0);
    m_host.RunIdle(1);
    task->UninstallTask();
    return 0u;
  };
  m_host.Start();
  while (runs < 1) m_host.RunIdle(5);
  m_host.RunIdle(1);
  EXPECT_EQ(runs, 1);
}

TEST(PlugInLoadingTest, NamesBundlesThatAreNoPlugIns) {
  const TemporaryFolder folder;
  folder.MakeFolder("Empty.InDesignPlugin");
  folder.Write("Broken.InDesignPlugin/Contents/Info.plist",
               "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleExecutable</key>"
               "<string>Broken</string></dict></plist>");
  folder.Write("Broken.InDesignPlugin/Contents/Linux/Broken", "no code");
  folder.MakeFolder("Other.bundle");
  HeadlessHost host;
  std::vector<std::string> errors;
  EXPECT_EQ(host.LoadPlugIns(folder.Path(), errors), 0);
  ASSERT_EQ(errors.size(), 2u);
  EXPECT_NE(errors[0].find("Broken.InDesignPlugin: "), std::string::npos) << errors[0];
  EXPECT_EQ(host.LoadPlugIns(folder.Path("gone"), errors), 0);
}

}  // namespace
