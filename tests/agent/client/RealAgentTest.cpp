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

std::atomic<int> sActivated = 0;
std::atomic<int> sDeactivated = 0;

int Count(int kind, void*) {
  if (kind == kNotification_FontActivated) ++sActivated;
  if (kind == kNotification_FontDeactivated) ++sDeactivated;
  return 0;
}

class RealAgentTest : public testing::Test {
 protected:
  RealAgentTest() {
    StartKiln();
    // The process is there at once; the first call waits until it listens.
    EXPECT_EQ(InitAppInstance(Facade(), 4, 0), CoreErrorCodes::kSuccess);
    EXPECT_EQ(InitThreadInstance(Facade()), CoreErrorCodes::kSuccess);
  }
  ~RealAgentTest() override { CleanUpOnShutdown(Facade()); }

  static FacadeRef Facade() { return GetPluginFacadeInstance(); }
  void StartKiln() { m_kiln = std::make_unique<ProgramRun>(kKiln, std::vector<std::string>{}); }
  const FontHome::Font& Font(size_t index) const { return m_fonts.fonts.at(index); }

  void AddFonts(std::vector<std::string> paths) {
    const auto results = MakeArray();
    ASSERT_EQ(KilnLibraryAddPaths(Facade(), 0, ToCFArray(paths).get(), nullptr, nullptr, results.get()),
              CoreErrorCodes::kSuccess);
    for (const auto& result : ToVector<CFDictionaryRef>(results.get())) {
      m_statuses += GetStringFromDict(result.get(), CFSTR("status")) + " ";
    }
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
    std::string ids;
    for (const auto& record : ToVector<CFDictionaryRef>(matched.get())) {
      ids += GetStringFromDict(record.get(), RecordKeys::kDatabaseID) + ":" +
             GetStringFromDict(record.get(), RecordKeys::kIsActive) + " ";
    }
    return ids;
  }

  static bool OtherProgramsSee(const std::string& name) {
    ProgramRun list("/usr/bin/fc-list", {":postscriptname=" + name, "file"});
    return list.Wait() == 0 && !list.Output().empty();
  }

  template <typename Condition>
  static void WaitUntil(const Condition& condition) {
    while (!condition()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }

  FontHome m_fonts;
  PrivateHome& m_home = m_fonts.home;
  std::unique_ptr<ProgramRun> m_kiln;
  std::string m_statuses;
};

TEST_F(RealAgentTest, FontsOfADocumentComeAndGo) {
  AddFonts({Font(0).file, Font(1).file, m_home.Folder().Write("text.ttf", "no font")});
  EXPECT_EQ(m_statuses, "added added failed ");
  sActivated = sDeactivated = 0;
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
  WaitUntil([] { return sActivated == 1 && sDeactivated == 1; });
  EXPECT_EQ(UnregisterForNotifications(Facade(), &Count), CoreErrorCodes::kSuccess);
}

TEST_F(RealAgentTest, APreviewIsForThisProcessAlone) {
  AddFonts({Font(0).file});
  unsigned int id = 0;
  unsigned int count = 0;
  ASSERT_EQ(GetFontsByPostscriptName(Facade(), Font(0).postScriptName.c_str(), nullptr, 0, &id, 1, &count),
            CoreErrorCodes::kSuccess);
  ASSERT_EQ(count, 1u);
  EXPECT_EQ(PreviewActivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_TRUE(FontHome::IsNameVisible(Font(0).postScriptName));
  EXPECT_FALSE(OtherProgramsSee(Font(0).postScriptName));
  EXPECT_EQ(DeactivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_FALSE(FontHome::IsNameVisible(Font(0).postScriptName));
}

TEST_F(RealAgentTest, WhatAnotherClientDoesIsSeenHereToo) {
  AddFonts({Font(0).file});
  const std::string& name = Font(0).postScriptName;
  unsigned int id = 0;
  unsigned int count = 0;
  ASSERT_EQ(GetFontsByPostscriptName(Facade(), name.c_str(), nullptr, 0, &id, 1, &count),
            CoreErrorCodes::kSuccess);
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
  const auto* listed = dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(fonts.get(), 0));
  unsigned int id = 0;
  CFMutableDictionaryRef info = nullptr;
  ASSERT_EQ(GetFontInfoByID(Facade(), nullptr, 0, listed, &id, &info), CoreErrorCodes::kSuccess);
  const auto record = adoptCF(info);
  EXPECT_EQ(GetStringFromDict(info, RecordKeys::kPostScriptName), Font(0).postScriptName);
  EXPECT_EQ(GetStringFromDict(info, RecordKeys::kDatabaseID), std::to_string(id));
  EXPECT_EQ(GetStringFromDict(info, RecordKeys::kIsVault), "1");

  CFArrayRef workgroups = nullptr;
  ASSERT_EQ(GetAllWorkgroupsForUser(Facade(), &workgroups, true, false), CoreErrorCodes::kSuccess);
  std::string types;
  for (const auto& workgroup : ToVector<CFDictionaryRef>(workgroups)) {
    types += GetStringFromDict(workgroup.get(), RecordKeys::kWorkgroupType) + " ";
  }
  CFRelease(workgroups);
  EXPECT_EQ(types, "3 4 ");

  const auto status = MakeDictionary();
  ASSERT_EQ(KilnLibraryStatus(Facade(), status.get()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(GetStringFromDict(status.get(), CFSTR("fontCount")), "1");
  char path[1024] = "";
  EXPECT_EQ(GetFontVaultPath(Facade(), sizeof(path), path), CoreErrorCodes::kSuccess);
  EXPECT_EQ(GetStringFromDict(status.get(), CFSTR("vaultPath")), path);
  EXPECT_EQ(GetFontVaultPath(Facade(), 2, path), CoreErrorCodes::kIndexOutOfRange);

  int value = 7;
  EXPECT_EQ(GetAreSchemaVersionsInSync(Facade(), &value), CoreErrorCodes::kSuccess);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(SaveDocumentFonts(Facade(), "/d.idml", "InDesign", "id", fonts.get()), CoreErrorCodes::kSuccess);
}

TEST_F(RealAgentTest, AKilledAgentIsToldAndTheNextOneKnowsTheFonts) {
  AddFonts({Font(0).file});
  const std::string ids = OpenDocument({Font(0).postScriptName});
  m_kiln->Signal(SIGKILL);
  m_kiln->Wait();
  const unsigned int id = static_cast<unsigned int>(std::stoul(ids));
  const TErrCode code = DeactivateFonts(Facade(), 1, &id, 0);
  EXPECT_TRUE(code == GAgentIF::kShutdown || code == GIPCClient::kServiceUnavailable) << std::hex << code;
  int running = 7;
  EXPECT_EQ(GetIsCoreAgentProcessRunning(Facade(), &running), CoreErrorCodes::kSuccess);
  EXPECT_EQ(running, 0);
  EXPECT_EQ(InitThreadInstance(Facade()), GOspreyConfig::kAgentNotFound);

  StartKiln();
  ResetPluginFacadeInstance();
  EXPECT_EQ(DeactivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_FALSE(OtherProgramsSee(Font(0).postScriptName));
}

TEST_F(RealAgentTest, AStoppedAgentIsNotWaitedForForLong) {
  AddFonts({Font(0).file});
  m_kiln->Signal(SIGSTOP);
  int running = 7;
  EXPECT_EQ(GetIsCoreAgentProcessRunning(Facade(), &running), GIPCClient::kServiceUnavailable);
  EXPECT_EQ(running, 7);
  m_kiln->Signal(SIGCONT);
  EXPECT_EQ(GetIsCoreAgentProcessRunning(Facade(), &running), CoreErrorCodes::kSuccess);
  EXPECT_EQ(running, 1);
}

}  // namespace
