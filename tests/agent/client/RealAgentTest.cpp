// The library against Kiln itself, each test with a Kiln, a home and a session of its own.

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "FontHome.h"
#include "GErrorCodes.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/LibraryInterface.h"
#include "client/PluginInterface.h"
#include "client/RecordKeys.h"
#include "client/Session.h"
#include "support/ProgramRun.h"

namespace {

using XCFUtils::GetStringFromDict;

const std::string kKiln = HORNBEAM_STAGE "/lib/hornbeam/Kiln/Kiln";

std::atomic<int> sHeard[32];

int Count(int kind, void*) {
  ++sHeard[kind];
  return 0;
}

class RealAgentTest : public testing::Test {
 protected:
  RealAgentTest() {
    for (auto& count : sHeard) count = 0;
    StartKiln();
    // The process is there at once; the first call waits until it listens.
    EXPECT_EQ(InitAppInstance(Facade(), 4, 0), CoreErrorCodes::kSuccess);
    EXPECT_EQ(InitThreadInstance(Facade()), CoreErrorCodes::kSuccess);
  }
  ~RealAgentTest() override {
    CleanUpOnShutdown(Facade());
    UnregisterForNotifications(nullptr, &Count);
  }

  static FacadeRef Facade() { return GetPluginFacadeInstance(); }
  void StartKiln() { m_kiln = std::make_unique<ProgramRun>(kKiln, std::vector<std::string>{}); }
  const FontHome::Font& Font(size_t index) const { return m_fonts.fonts.at(index); }

  void AddFonts(const std::vector<std::string>& paths) {
    const auto results = MakeArray();
    ASSERT_EQ(KilnLibraryAddPaths(Facade(), 0, ToCFArray(paths).get(), nullptr, nullptr, results.get()),
              CoreErrorCodes::kSuccess);
    m_statuses = Values(results.get(), CFSTR("status"));
  }

  // What a plug-in does for a document: a font's ID by name, "" when it isn't matched.
  std::string OpenDocument(const std::vector<std::string>& names) {
    const auto fonts = MakeArray();
    for (const std::string& name : names) {
      const auto record = MakeDictionary();
      XCFUtils::PutStringIntoDict(record.get(), RecordKeys::kPostScriptName, name);
      CFArrayAppendValue(fonts.get(), record.get());
    }
    const auto matched = MakeArray();
    const auto problems = MakeArray();
    EXPECT_EQ(ActivateDocumentFontsByPath(Facade(), "/d.idml", fonts.get(), true, false, true, true, 0,
                                          matched.get(), problems.get()),
              CoreErrorCodes::kSuccess);
    m_problems = Values(problems.get(), RecordKeys::kPostScriptName);
    std::string ids;
    for (const auto& record : ToVector<CFDictionaryRef>(matched.get())) {
      ids += GetStringFromDict(record.get(), RecordKeys::kDatabaseID) + ":" +
             GetStringFromDict(record.get(), RecordKeys::kIsActive) + " ";
    }
    return ids;
  }

  unsigned int IDOf(const std::string& name) {
    unsigned int id = 0;
    unsigned int count = 0;
    EXPECT_EQ(GetFontsByPostscriptName(Facade(), name.c_str(), nullptr, 0, &id, 1, &count),
              CoreErrorCodes::kSuccess);
    EXPECT_EQ(count, 1u);
    return id;
  }

  static bool OtherProgramsSee(const std::string& name) {
    ProgramRun list("/usr/bin/fc-list", {":postscriptname=" + name, "file"});
    return list.Wait() == 0 && !list.Output().empty();
  }

  template <typename Condition>
  static void WaitUntil(const Condition& condition) {
    while (!condition()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  static void WaitForNotification(int kind) {
    WaitUntil([kind] { return sHeard[kind] > 0; });
  }
  // The values of a key in all records of a list.
  static std::string Values(CFArrayRef records, CFStringRef key) {
    std::string values;
    for (const auto& record : ToVector<CFDictionaryRef>(records)) {
      values += GetStringFromDict(record.get(), key) + " ";
    }
    return values;
  }

  FontHome m_fonts;
  PrivateHome& m_home = m_fonts.home;
  std::unique_ptr<ProgramRun> m_kiln;
  std::string m_statuses;
  std::string m_problems;
};

TEST_F(RealAgentTest, FontsOfADocumentComeAndGo) {
  AddFonts({Font(0).file, Font(1).file, m_home.Folder().Write("text.ttf", "no font")});
  EXPECT_EQ(m_statuses, "added added failed ");
  ASSERT_EQ(RegisterForNotifications(Facade(), &Count), CoreErrorCodes::kSuccess);

  const std::string first = OpenDocument({Font(0).postScriptName, "Missing-Regular"});
  ASSERT_TRUE(first.ends_with(":0 ")) << first;
  EXPECT_TRUE(FontHome::IsNameVisible(Font(0).postScriptName));
  EXPECT_FALSE(FontHome::IsNameVisible(Font(1).postScriptName));
  EXPECT_TRUE(OtherProgramsSee(Font(0).postScriptName));
  EXPECT_TRUE(OpenDocument({Font(0).postScriptName}).ends_with(":1 "));

  const unsigned int ids[] = {static_cast<unsigned int>(std::stoul(first))};
  int state = 7;
  EXPECT_EQ(GetClientFontActivationStates(1, ids, &state), CoreErrorCodes::kSuccess);
  EXPECT_EQ(state, 1);
  EXPECT_EQ(DeactivateFonts(Facade(), 1, ids, 0), CoreErrorCodes::kSuccess);
  EXPECT_EQ(GetFontIsActivated(Facade(), 1, ids, &state), CoreErrorCodes::kSuccess);
  EXPECT_EQ(state, 0);
  WaitUntil([&] { return !FontHome::IsNameVisible(Font(0).postScriptName); });
  EXPECT_FALSE(OtherProgramsSee(Font(0).postScriptName));
  WaitForNotification(kNotification_FontActivated);
  WaitForNotification(kNotification_FontDeactivated);
}

TEST_F(RealAgentTest, APreviewIsForThisProcessAlone) {
  AddFonts({Font(0).file});
  const unsigned int id = IDOf(Font(0).postScriptName);
  EXPECT_EQ(PreviewActivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_TRUE(FontHome::IsNameVisible(Font(0).postScriptName));
  EXPECT_FALSE(OtherProgramsSee(Font(0).postScriptName));
  EXPECT_EQ(DeactivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_FALSE(FontHome::IsNameVisible(Font(0).postScriptName));
}

TEST_F(RealAgentTest, WhatAnotherClientDoesIsSeenHereToo) {
  AddFonts({Font(0).file});
  const std::string& name = Font(0).postScriptName;
  const unsigned int id = IDOf(name);
  Session other("11111111-2222-3333-4444-555555555555", [](auto&&) {});
  kiln::wire::ClientMessage request;
  Connection::Incoming reply;
  request.mutable_activate_fonts()->add_font_ids(id);
  ASSERT_EQ(other.Call(request, reply), CoreErrorCodes::kSuccess);
  WaitUntil([&] { return FontHome::IsNameVisible(name); });

  // Giving back what one holds beside the other leaves the font to both.
  OpenDocument({name});
  int own = 7;
  EXPECT_EQ(GetClientFontActivationStates(1, &id, &own), CoreErrorCodes::kSuccess);
  EXPECT_EQ(own, 0);
  EXPECT_EQ(DeactivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_TRUE(FontHome::IsNameVisible(name));

  request.mutable_deactivate_fonts()->add_font_ids(id);
  ASSERT_EQ(other.Call(request, reply), CoreErrorCodes::kSuccess);
  WaitUntil([&] { return !FontHome::IsNameVisible(name); });
  other.Drop();
}

TEST_F(RealAgentTest, QueriesAnswerWithRecordsOfStrings) {
  AddFonts({Font(0).file});
  const auto fonts = MakeArray();
  ASSERT_EQ(KilnLibraryListFonts(Facade(), fonts.get()), CoreErrorCodes::kSuccess);
  ASSERT_EQ(CFArrayGetCount(fonts.get()), 1);
  unsigned int id = 0;
  CFMutableDictionaryRef info = nullptr;
  const auto* listed = dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(fonts.get(), 0));
  ASSERT_EQ(GetFontInfoByID(Facade(), nullptr, 0, listed, &id, &info), CoreErrorCodes::kSuccess);
  const auto record = adoptCF(info);
  EXPECT_EQ(GetStringFromDict(info, RecordKeys::kPostScriptName), Font(0).postScriptName);
  EXPECT_EQ(GetStringFromDict(info, RecordKeys::kDatabaseID), std::to_string(id));
  EXPECT_EQ(GetStringFromDict(info, RecordKeys::kIsVault), "1");
  CFArrayRef list = nullptr;
  ASSERT_EQ(GetAllWorkgroupsForUser(Facade(), &list, true, false), CoreErrorCodes::kSuccess);
  const auto workgroups = adoptCF(list);
  EXPECT_EQ(Values(list, RecordKeys::kWorkgroupType), "3 4 ");

  const auto status = MakeDictionary();
  ASSERT_EQ(KilnLibraryStatus(Facade(), status.get()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(GetStringFromDict(status.get(), CFSTR("fontCount")), "1");
  char path[1024] = "";
  EXPECT_EQ(GetFontVaultPath(Facade(), sizeof(path), path), CoreErrorCodes::kSuccess);
  EXPECT_EQ(GetStringFromDict(status.get(), CFSTR("vaultPath")), path);
  int value = 7;
  EXPECT_EQ(GetAreSchemaVersionsInSync(Facade(), &value), CoreErrorCodes::kSuccess);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(SaveDocumentFonts(Facade(), "/d.idml", "InDesign", "id", fonts.get()), CoreErrorCodes::kSuccess);
}

TEST_F(RealAgentTest, ASetLivesInOneLibraryAndFontsInAnyNumber) {
  AddFonts({Font(0).file});
  AddFonts({Font(1).file});  // has the higher ID
  const unsigned int ids[] = {IDOf(Font(0).postScriptName), IDOf(Font(1).postScriptName)};
  unsigned int mine = 0;
  unsigned int system = 0;
  int set = 0;
  ASSERT_EQ(KilnLibraryCreateWorkgroup(Facade(), "Mine", &mine), CoreErrorCodes::kSuccess);
  EXPECT_EQ(KilnLibraryChangeWorkgroupFonts(Facade(), mine, 2, ids, false, nullptr),
            CoreErrorCodes::kSuccess);
  ASSERT_EQ(GetSystemWorkgroupID(Facade(), &system), CoreErrorCodes::kSuccess);
  EXPECT_EQ(CreateTopLevelSet(Facade(), &set, "S", int(system), 0, 0, 0, nullptr),
            GOspreySetManager::kCannotAddSetsToSystemWorkgroup);
  EXPECT_EQ(CreateTopLevelSet(Facade(), &set, "S", -2, 0, 0, 1, ids), GOspreySetManager::kWorkgroupNotFound);
  ASSERT_EQ(CreateTopLevelSet(Facade(), &set, "S", int(mine), 0, 0, 1, ids), CoreErrorCodes::kSuccess);
  const auto setID = static_cast<unsigned int>(set);
  EXPECT_EQ(AddFontsToSets(Facade(), 2, ids, 1, &setID), CoreErrorCodes::kSuccess);
  const auto sets = MakeArray();
  ASSERT_EQ(KilnLibraryListSets(Facade(), sets.get()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(Values(sets.get(), RecordKeys::kSetName) + Values(sets.get(), RecordKeys::kWorkgroupName),
            "S Mine ");
  const auto* first = dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(sets.get(), 0));
  const auto* fonts = dynamicCF<CFArrayRef>(CFDictionaryGetValue(first, RecordKeys::kFontIDs));
  EXPECT_EQ(ToStringVector(fonts),
            (std::vector<std::string>{std::to_string(ids[0]), std::to_string(ids[1])}));

  // What is active stays in its last library.
  OpenDocument({Font(0).postScriptName});
  const auto kept = MakeArray();
  for (const unsigned int library : {mine, 1u}) {
    EXPECT_EQ(CFArrayGetCount(kept.get()), 0);
    EXPECT_EQ(KilnLibraryChangeWorkgroupFonts(Facade(), library, 1, ids, true, kept.get()),
              CoreErrorCodes::kSuccess);
  }
  EXPECT_EQ(ToStringVector(kept.get()), std::vector<std::string>{std::to_string(ids[0])});
  EXPECT_EQ(KilnLibraryDeactivateFonts(Facade(), 2, ids), CoreErrorCodes::kSuccess);
  EXPECT_FALSE(FontHome::IsNameVisible(Font(0).postScriptName));
}

TEST_F(RealAgentTest, AFontsFamilyAndItsConflictsAreFoundAndItsFileIsExported) {
  FontBuilder twin;
  twin.postScriptName = Font(0).postScriptName;
  twin.version = "Version 2.000";
  AddFonts({Font(0).file});
  const unsigned int id = IDOf(Font(0).postScriptName);
  AddFonts({Font(1).file});
  AddFonts({m_home.Folder().Write("files/Twin.ttf", twin.TrueType())});
  OpenDocument({twin.postScriptName});  // the newer one
  unsigned int conflict = 0;
  EXPECT_EQ(GetFontConflicts(Facade(), 1, &id, &conflict), CoreErrorCodes::kSuccess);
  EXPECT_NE(conflict, 0u);
  EXPECT_NE(conflict, id);
  const auto font = MakeDictionary();
  XCFUtils::PutULongIntoDictAsString(font.get(), RecordKeys::kDatabaseID, id);
  const auto family = MakeArray();
  EXPECT_EQ(FindFontsInSameFamilyForActivation(font.get(), nullptr, 0, family.get()),
            CoreErrorCodes::kSuccess);
  EXPECT_EQ(Values(family.get(), RecordKeys::kPostScriptName), "Testa-Regular Testa-Italic Testa-Regular ");
  EXPECT_EQ(Values(family.get(), RecordKeys::kActivationStatus), "0 0 1 ");

  const std::string folder = m_home.Folder().Path("new/fonts");
  int allowed = 7;
  EXPECT_EQ(CanExportFonts(Facade(), 1, &id, &allowed), CoreErrorCodes::kSuccess);
  EXPECT_EQ(allowed, 1);
  EXPECT_EQ(ExportFonts(Facade(), 1, &id, folder.c_str(), 0, 0), CoreErrorCodes::kSuccess);
  const unsigned int wanted[] = {id, 0xFFFFFFFF};
  const auto results = MakeArray();
  EXPECT_EQ(KilnLibraryExportFonts(Facade(), 2, wanted, folder.c_str(), nullptr, nullptr, results.get()),
            GOspreyExportFonts::kCouldNotCopyFile);
  EXPECT_EQ(Values(results.get(), CFSTR("path")), folder + "/Testa-Regular 2.ttf  ");
  EXPECT_EQ(Values(results.get(), CFSTR("message")), " There is no such font. ");
}

TEST_F(RealAgentTest, RefusedFontsAreToldWhileTheOthersComeUp) {
  AddFonts({Font(0).file, Font(1).file});
  const unsigned int ids[] = {IDOf(Font(0).postScriptName), IDOf(Font(1).postScriptName)};
  ASSERT_EQ(RegisterForNotifications(Facade(), &Count), CoreErrorCodes::kSuccess);
  ASSERT_EQ(KilnLibrarySetRefused(Facade(), 1, 1, ids, true), CoreErrorCodes::kSuccess);
  unsigned int refused = 0;
  unsigned int count = 0;
  EXPECT_EQ(ActivateFonts(Facade(), 2, ids, nullptr, 1, 1, 1, 0, 1, nullptr, &refused, nullptr, &count),
            GOspreyAssetManager::kLicenseComplianceViolation);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(refused, ids[0]);
  EXPECT_TRUE(FontHome::IsNameVisible(Font(1).postScriptName));
  EXPECT_EQ(PreviewActivateFonts(Facade(), 2, ids, 0), GOspreyAssetManager::kLicenseComplianceViolation);
  const std::string opened = OpenDocument({Font(0).postScriptName, Font(1).postScriptName});
  EXPECT_EQ(opened, std::to_string(ids[1]) + ":1 ");
  EXPECT_EQ(m_problems, Font(0).postScriptName + " ");
  WaitForNotification(kNotification_DesignActivationNonCompliant);
  EXPECT_FALSE(FontHome::IsNameVisible(Font(0).postScriptName));
}

TEST_F(RealAgentTest, GoogleFontsAndAServersComeFromFoldersAndAreAnnounced) {
  ASSERT_EQ(RegisterForNotifications(Facade(), &Count), CoreErrorCodes::kSuccess);
  const auto& home = m_home.Folder();
  EXPECT_EQ(SetGoogleWebFontsEnabled(Facade(), 1), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(CanAccessGoogleFonts(Facade()), 0);
  ASSERT_EQ(KilnLibrarySetGoogle(Facade(), true, home.Path("files").c_str()), CoreErrorCodes::kSuccess);
  for (int kind : {kNotification_GoogleWebFontsEnabled, kNotification_GoogleReplicationProgress,
                   kNotification_GoogleReplicationStopped}) {
    WaitForNotification(kind);
  }
  EXPECT_EQ(CanAccessGoogleFonts(Facade()), 1);
  const auto google = MakeArray();
  EXPECT_EQ(GetGoogleFonts(Facade(), google.get()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(CFArrayGetCount(google.get()), 3);
  EXPECT_EQ(SetGoogleWebFontsEnabled(Facade(), 0), CoreErrorCodes::kSuccess);
  int enabled = 7;
  EXPECT_EQ(GetIsGoogleWebFontsEnabled(Facade(), &enabled), CoreErrorCodes::kSuccess);
  EXPECT_EQ(enabled, 0);

  home.Write("server/server.conf", "users = anna\n");
  home.Write("server/Press/a.ttf", FontBuilder().TrueType());
  ASSERT_EQ(KilnLibraryLogIn(Facade(), home.Path("server").c_str(), "anna"), CoreErrorCodes::kSuccess);
  for (int kind : {kNotification_LoggedInStateChanged, kNotification_WorkgroupsChanged,
                   kNotification_BulkReplicationStopped}) {
    WaitForNotification(kind);
  }
  EXPECT_EQ(KilnLibraryLogOut(Facade(), true), CoreErrorCodes::kSuccess);
}

TEST_F(RealAgentTest, AStoppedAgentIsNotWaitedForForLong) {
  AddFonts({Font(0).file});
  m_kiln->Signal(SIGSTOP);
  int running = 7;
  WaitUntil([&] {  // the signal is on its way
    running = 7;
    return GetIsCoreAgentProcessRunning(Facade(), &running) == GIPCClient::kServiceUnavailable;
  });
  EXPECT_EQ(running, 7);
  m_kiln->Signal(SIGCONT);
  EXPECT_EQ(GetIsCoreAgentProcessRunning(Facade(), &running), CoreErrorCodes::kSuccess);
  EXPECT_EQ(running, 1);
}

}  // namespace
