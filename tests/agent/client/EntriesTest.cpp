#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>

#include "FakeAgent.h"
#include "FontHome.h"
#include "GErrorCodes.h"
#include "GFileSystem.h"
#include "MachineFonts.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/LibraryInterface.h"
#include "client/PluginInterface.h"
#include "client/RecordKeys.h"
#include "support/FakeSystem.h"
#include "support/ScopedReplacement.h"

namespace {

using kiln::wire::ClientMessage;
using XCFUtils::GetStringFromDict;

RetainPtr<CFMutableDictionaryRef> Record(const std::string& postScriptName) {
  auto record = MakeDictionary();
  XCFUtils::PutStringIntoDict(record.get(), RecordKeys::kPostScriptName, postScriptName);
  return record;
}

CFDictionaryRef At(const RetainPtr<CFMutableArrayRef>& array, CFIndex index) {
  return dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(array.get(), index));
}

class EntriesTest : public testing::Test {
 protected:
  ~EntriesTest() override { CleanUpOnShutdown(Facade()); }
  static FacadeRef Facade() { return GetPluginFacadeInstance(); }

  FontHome m_fonts;
  const std::vector<MachineFonts::Font>& m_machine = m_fonts.machine;
  PrivateHome& m_home = m_fonts.home;
  FakeProcesses m_processes;
  ScopedReplacement<platform::Processes> m_replaced{m_processes};
};

// --- Facade

TEST_F(EntriesTest, OnlyTheNewestFacadeIsTaken) {
  FakeAgent agent;
  const FacadeRef first = Facade();
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(Facade(), first);
  int standalone = 7;
  EXPECT_EQ(ResetPluginFacadeInstance(), CoreErrorCodes::kSuccess);
  EXPECT_NE(Facade(), first);
  for (const FacadeRef stale : {first, FacadeRef(nullptr), static_cast<FacadeRef>(&standalone)}) {
    EXPECT_EQ(GetRunningStandalone(stale, &standalone), GAgentIF::kShutdown);
  }
  EXPECT_EQ(standalone, 7);
  EXPECT_TRUE(agent.Requests().empty());
}

TEST_F(EntriesTest, ColumnNamesAreWrittenWholeOrNotAtAll) {
  char buffer[] = "##############";
  EXPECT_EQ(GetExportFontsColumnID(buffer, 11), CoreErrorCodes::kIndexOutOfRange);
  EXPECT_STREQ(buffer, "##############");
  EXPECT_EQ(GetExportFontsColumnID(buffer, 12), CoreErrorCodes::kSuccess);
  EXPECT_STREQ(buffer, "exportFonts");
  EXPECT_EQ(buffer[12], '#');
  EXPECT_EQ(GetExportFontsColumnID(buffer, 0), CoreErrorCodes::kIndexOutOfRange);
  EXPECT_EQ(GetExportFontsColumnID(nullptr, 100), CoreErrorCodes::kNullPointer);
}

// --- Start-up without a sound agent

struct AbsenceCase {
  const char* name;
  bool processRuns;
  FakeAgent::Behaviour behaviour;  // none: nobody listens
  TErrCode initApp;
  TErrCode running;
  TErrCode initThread;
  int inSync;  // -1: the status isn't 0
};

class Absence : public EntriesTest, public testing::WithParamInterface<AbsenceCase> {};

TEST_P(Absence, IsToldByTheStartUpCalls) {
  const AbsenceCase& test = GetParam();
  if (test.processRuns) m_processes.running.push_back({1, "/opt/Kiln/Kiln"});
  std::unique_ptr<FakeAgent> agent;
  if (test.behaviour) agent.reset(new FakeAgent(FakeAgent::Misbehaving(test.behaviour)));
  EXPECT_EQ(InitAppInstance(Facade(), 4, 0), test.initApp);
  int running = 7;
  EXPECT_EQ(GetIsCoreAgentProcessRunning(Facade(), &running), test.running);
  EXPECT_EQ(running, test.running == 0 ? 0 : 7);
  EXPECT_EQ(InitThreadInstance(Facade()), test.initThread);
  int inSync = 7;
  const TErrCode status = GetAreSchemaVersionsInSync(Facade(), &inSync);
  EXPECT_EQ(status == 0 ? inSync : -1, test.inSync);
  EXPECT_EQ(DestroyThreadInstance(Facade()), CoreErrorCodes::kSuccess);
}

INSTANTIATE_TEST_SUITE_P(
    Agents, Absence,
    testing::Values(AbsenceCase{"NoProcess", false, {}, 0, 0, GOspreyConfig::kAgentNotFound, -1},
                    AbsenceCase{"ProcessThatNeverListens",
                                true,
                                {},
                                0,
                                GIPCClient::kServiceUnavailable,
                                GOspreyConfig::kAgentRunningInWrongMode,
                                -1},
                    AbsenceCase{"AnotherProtocol", true,
                                [](int socket) {
                                  FakeAgent::Request request;
                                  if (!FakeAgent::ReceiveFrame(socket, request)) return;
                                  auto reply = FakeAgent::ReplyTo(request.id());
                                  reply.set_error(CoreErrorCodes::kVersionMismatch);
                                  FakeAgent::SendFrame(socket, reply);
                                },
                                CoreErrorCodes::kVersionMismatch, CoreErrorCodes::kVersionMismatch,
                                GOspreyConfig::kAgentRunningInWrongMode, 0}),
    [](const auto& info) { return info.param.name; });

TEST_F(EntriesTest, AnAnswerOfAnotherKindIsNoAnswer) {
  FakeAgent agent;  // answers everything with an empty reply
  int value = 7;
  CFArrayRef workgroups = nullptr;
  CFMutableDictionaryRef info = nullptr;
  char path[16] = "#";
  const unsigned int id = 3;
  const auto query = Record("A");
  const TErrCode expected = GKVMessageDataHandler::kInvalidMessage;
  EXPECT_EQ(GetIsLoggedIn(Facade(), &value), expected);
  EXPECT_EQ(GetPermission(Facade(), true, "exportFonts", 0, &value), expected);
  EXPECT_EQ(GetFontIsActivated(Facade(), 1, &id, &value), expected);
  EXPECT_EQ(GetClientFontActivationStates(1, &id, &value), expected);
  EXPECT_EQ(GetFontVaultPath(Facade(), sizeof(path), path), expected);
  EXPECT_EQ(GetAllWorkgroupsForUser(Facade(), &workgroups, true, true), expected);
  EXPECT_EQ(GetFontInfoByID(Facade(), nullptr, 0, query.get(), nullptr, &info), expected);
  EXPECT_EQ(value, 7);
  EXPECT_STREQ(path, "#");
  EXPECT_EQ(workgroups, nullptr);
  EXPECT_EQ(info, nullptr);
}

TEST_F(EntriesTest, ArgumentsWithoutSenseSendNothing) {
  FakeAgent agent;
  unsigned int count = 7;
  const auto fonts = MakeArray();
  const auto immutable = adoptCF(CFArrayCreate(nullptr, nullptr, 0, &kCFTypeArrayCallBacks));
  auto* notMutable = const_cast<CFMutableArrayRef>(immutable.get());
  EXPECT_EQ(GetFontsByPostscriptName(Facade(), nullptr, nullptr, 0, nullptr, 0, &count),
            CoreErrorCodes::kNullPointer);
  EXPECT_EQ(GetFontsByPostscriptName(Facade(), "\xFF", nullptr, 0, nullptr, 0, &count),
            CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(GetFontsByFamilyName(Facade(), "A", nullptr, 3, nullptr, 0, &count),
            CoreErrorCodes::kNullPointer);
  EXPECT_EQ(DeactivateFonts(Facade(), 2, nullptr, 0), CoreErrorCodes::kNullPointer);
  EXPECT_EQ(ActivateDocumentFontsByPath(Facade(), "", fonts.get(), true, false, true, true, 0, nullptr,
                                        fonts.get()),
            CoreErrorCodes::kNullPointer);
  EXPECT_EQ(ActivateDocumentFontsByPath(Facade(), "", fonts.get(), true, false, true, true, 0, notMutable,
                                        fonts.get()),
            CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(count, 7u);
  EXPECT_TRUE(agent.Requests().empty());
}

TEST_F(EntriesTest, NamesGiveAtMostWhatTheCallerHasRoomFor) {
  FakeAgent agent([](const auto&, auto& reply) {
    for (uint32_t id = 1; id <= 5; ++id) reply.mutable_fonts_by_name()->add_font_ids(id);
  });
  unsigned int ids[] = {0, 0, 99};
  unsigned int count = 0;
  EXPECT_EQ(GetFontsByPostscriptName(Facade(), "A", nullptr, 0, ids, 2, &count), CoreErrorCodes::kSuccess);
  EXPECT_EQ(count, 2u);
  EXPECT_EQ(ids[1], 2u);
  EXPECT_EQ(ids[2], 99u);
}

// --- Activation

// Matches each font whose name is a font of the machine, with IDs from 100.
void MatchMachineFonts(const FakeAgent::Request& request, FakeAgent::Reply& reply) {
  if (request.has_deactivate_fonts()) {
    *reply.mutable_deactivate_fonts()->mutable_deactivated_ids() = request.deactivate_fonts().font_ids();
    return;
  }
  if (!request.has_activate_document_fonts()) return;
  auto& answer = *reply.mutable_activate_document_fonts();
  const auto& machine = MachineFonts::All();
  for (int i = 0; i < request.activate_document_fonts().fonts_size(); ++i) {
    const auto& name = request.activate_document_fonts().fonts(i).postscript_name();
    const auto found = std::ranges::find(machine, name, &MachineFonts::Font::postScriptName);
    if (found == machine.end()) {
      answer.add_problems()->set_request_index(uint32_t(i));
      continue;
    }
    auto& match = *answer.add_matched();
    match.set_request_index(uint32_t(i));
    match.mutable_font()->set_id(100 + uint32_t(found - machine.begin()));
    match.mutable_font()->set_postscript_name(name);
    match.mutable_font()->set_path(found->file);
    match.mutable_font()->set_kind(kiln::wire::FONT_KIND_TRUETYPE);
    match.mutable_font()->set_state(i == 0 ? kiln::wire::ACTIVATION_PERMANENT
                                           : kiln::wire::ACTIVATION_INACTIVE);
  }
}

TEST_F(EntriesTest, ADocumentsFontsAreMatchedInOneCallAndVisibleWhenItReturns) {
  FakeAgent agent(&MatchMachineFonts);
  const auto fonts = MakeArray();
  CFArrayAppendValue(fonts.get(), Record(m_machine[0].postScriptName).get());
  const auto missing = Record("Missing-Regular");
  XCFUtils::PutStringIntoDict(missing.get(), RecordKeys::kFoundry, "Nobody");
  CFArrayAppendValue(fonts.get(), missing.get());
  CFArrayAppendValue(fonts.get(), CFSTR("no record"));
  const auto used = Record(m_machine[1].postScriptName);
  CFDictionarySetValue(used.get(), RecordKeys::kSubDocumentsWithFont, ToCFArray({"doc/1", "doc/2"}).get());
  CFArrayAppendValue(fonts.get(), used.get());
  const auto embedded = MakeDictionary();
  const auto hints = MakeArray();
  CFArrayAppendValue(hints.get(), Record("Hint-Regular").get());
  CFDictionarySetValue(embedded.get(), RecordKeys::kEmbeddedFonts, hints.get());
  CFArrayAppendValue(fonts.get(), embedded.get());

  const auto matched = MakeArray();
  const auto problems = MakeArray();
  ASSERT_EQ(ActivateDocumentFontsByPath(Facade(), "/a/b.idml", fonts.get(), true, false, true, true, -2,
                                        matched.get(), problems.get()),
            CoreErrorCodes::kSuccess);
  EXPECT_TRUE(MachineFonts::IsVisible(m_machine[0].file));
  EXPECT_TRUE(MachineFonts::IsVisible(m_machine[1].file));

  const auto request = agent.Requests().back().activate_document_fonts();
  EXPECT_EQ(request.document_path(), "/a/b.idml");
  EXPECT_EQ(request.fonts_size(), 3);
  ASSERT_EQ(request.embedded_fonts_size(), 1);
  EXPECT_EQ(request.embedded_fonts(0).postscript_name(), "Hint-Regular");
  EXPECT_EQ(request.workgroup_id(), 0u);

  ASSERT_EQ(CFArrayGetCount(matched.get()), 2);
  EXPECT_EQ(GetStringFromDict(At(matched, 0), RecordKeys::kDatabaseID), "100");
  EXPECT_EQ(GetStringFromDict(At(matched, 0), RecordKeys::kKind), "TrueType");
  EXPECT_EQ(GetStringFromDict(At(matched, 0), RecordKeys::kActivationStatus), "4");
  EXPECT_EQ(GetStringFromDict(At(matched, 0), RecordKeys::kIsActive), "1");
  EXPECT_EQ(GetStringFromDict(At(matched, 0), RecordKeys::kIsTemp), "0");
  EXPECT_EQ(GetStringFromDict(At(matched, 1), RecordKeys::kActivationStatus), "0");
  EXPECT_EQ(GetStringFromDict(At(matched, 1), RecordKeys::kIsActive), "0");
  const auto* documents =
      dynamicCF<CFArrayRef>(CFDictionaryGetValue(At(matched, 1), RecordKeys::kSubDocumentsWithFont));
  EXPECT_EQ(ToStringVector(documents), (std::vector<std::string>{"doc/1", "doc/2"}));

  ASSERT_EQ(CFArrayGetCount(problems.get()), 1);
  EXPECT_EQ(GetStringFromDict(At(problems, 0), RecordKeys::kPostScriptName), "Missing-Regular");
  EXPECT_EQ(GetStringFromDict(At(problems, 0), RecordKeys::kFoundry), "Nobody");
  EXPECT_NE(dynamicCF<CFArrayRef>(CFDictionaryGetValue(At(problems, 0), RecordKeys::kPossibleReplacements)),
            nullptr);
  EXPECT_NE(dynamicCF<CFMutableDictionaryRef>(At(problems, 0)), nullptr);  // the resolver writes into it

  const unsigned int id = 101;
  EXPECT_EQ(DeactivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_TRUE(MachineFonts::IsVisible(m_machine[0].file));
  EXPECT_FALSE(MachineFonts::IsVisible(m_machine[1].file));
  CleanUpOnShutdown(Facade());
  EXPECT_FALSE(MachineFonts::IsVisible(m_machine[0].file));
}

TEST_F(EntriesTest, AThousandFontsCostAsManyCallsAsOne) {
  FakeAgent agent(&MatchMachineFonts);
  size_t before = 0;
  for (int count : {1, 1000}) {
    const auto fonts = MakeArray();
    for (int i = 0; i < count; ++i) CFArrayAppendValue(fonts.get(), Record("Font" + std::to_string(i)).get());
    const auto problems = MakeArray();
    ResetPluginFacadeInstance();
    ASSERT_EQ(ActivateDocumentFontsByPath(Facade(), "", fonts.get(), true, false, true, true, 0,
                                          MakeArray().get(), problems.get()),
              CoreErrorCodes::kSuccess);
    EXPECT_EQ(CFArrayGetCount(problems.get()), count);
    EXPECT_EQ(agent.Requests().size() - before, 2u);  // the greeting and the one call
    before = agent.Requests().size();
  }
}

TEST_F(EntriesTest, AHostileAnswerToADocumentIsReadWithCare) {
  FakeAgent agent([](const auto& request, auto& reply) {
    if (!request.has_activate_document_fonts()) return;
    auto& answer = *reply.mutable_activate_document_fonts();
    answer.add_matched()->set_request_index(0xFFFFFFFF);
    answer.add_matched()->set_request_index(0);  // font 0
    answer.add_problems()->set_request_index(1);
    auto& match = *answer.add_matched();
    match.mutable_font()->set_id(5);
    match.mutable_font()->set_path("/nowhere/at.all");
    match.mutable_font()->set_state(static_cast<kiln::wire::ActivationState>(77));
  });
  const auto fonts = MakeArray();
  CFArrayAppendValue(fonts.get(), Record("A").get());
  const auto matched = MakeArray();
  const auto problems = MakeArray();
  EXPECT_EQ(ActivateDocumentFontsByPath(Facade(), nullptr, fonts.get(), true, false, true, true, 0,
                                        matched.get(), problems.get()),
            CoreErrorCodes::kSuccess);
  ASSERT_EQ(CFArrayGetCount(matched.get()), 1);
  EXPECT_EQ(GetStringFromDict(At(matched, 0), RecordKeys::kIsActive), "0");
  EXPECT_EQ(CFArrayGetCount(problems.get()), 0);
}

TEST_F(EntriesTest, FailedAndRefusedFontsAreToldWithinTheirCapacities) {
  FakeAgent agent([](const auto& request, auto& reply) {
    if (!request.has_activate_fonts()) return;
    EXPECT_EQ(request.activate_fonts().mode(), kiln::wire::MODE_AUTO);
    reply.set_error(GOspreyAssetManager::kLicenseComplianceViolation);
    for (uint32_t id : {1, 2, 3}) reply.mutable_activate_fonts()->add_failed_ids(id);
    reply.mutable_activate_fonts()->add_refused_ids(4);
  });
  const unsigned int ids[] = {1, 2, 3, 4};
  unsigned int failed[] = {0, 0, 99};
  unsigned int refused[] = {0};
  unsigned int failedCount = 0;
  unsigned int refusedCount = 0;
  EXPECT_EQ(
      ActivateFonts(Facade(), 4, ids, nullptr, 1, 1, 1, 2, 1, failed, refused, &failedCount, &refusedCount),
      GOspreyAssetManager::kLicenseComplianceViolation);
  EXPECT_EQ(failedCount, 2u);
  EXPECT_EQ(failed[1], 2u);
  EXPECT_EQ(failed[2], 99u);
  EXPECT_EQ(refusedCount, 1u);
  EXPECT_EQ(refused[0], 4u);
}

TEST_F(EntriesTest, APreviewThatThisProcessCannotSeeIsGivenBack) {
  FakeAgent agent([](const auto& request, auto& reply) {
    if (request.has_deactivate_fonts()) reply.mutable_deactivate_fonts();
    if (!request.has_activate_fonts()) return;
    EXPECT_EQ(request.activate_fonts().mode(), kiln::wire::MODE_AUTO_LOCAL);
    auto& font = *reply.mutable_activate_fonts()->add_fonts();
    font.set_id(6);
    font.set_path("/nowhere/at.all");
  });
  const unsigned int id = 6;
  EXPECT_EQ(PreviewActivateFonts(Facade(), 1, &id, 0), GFontActivation::kOSActivationError);
  EXPECT_EQ(agent.Count(ClientMessage::kDeactivateFonts), 1);
}

// --- Notifications

std::atomic<unsigned int> sActivated = 0;
std::atomic<TErrCode> sCodeInside = 0;
std::atomic<FacadeRef> sFacade = nullptr;

int Receive(int kind, void* data) {
  if (kind != kNotification_FontActivated) return 0;
  int running = 0;
  sCodeInside = GetIsCoreAgentProcessRunning(sFacade, &running);
  sActivated = *static_cast<unsigned int*>(data);
  sActivated.notify_all();
  return 0;
}

TEST_F(EntriesTest, NotificationsOutliveAResetAndTheirReceiversMayCallNothing) {
  FakeAgent agent;
  ASSERT_EQ(RegisterForNotifications(Facade(), &Receive), CoreErrorCodes::kSuccess);
  EXPECT_EQ(RegisterForNotifications(Facade(), &Receive), CoreErrorCodes::kItemAlreadyExists);
  ResetPluginFacadeInstance();
  sFacade = Facade();
  ASSERT_EQ(EnableDesignActivation(Facade()), CoreErrorCodes::kSuccess);
  FakeAgent::Reply event;
  event.mutable_fonts_activated()->add_fonts()->set_font_id(42);
  agent.SendEvent(event);
  sActivated.wait(0);
  EXPECT_EQ(sActivated, 42u);
  EXPECT_EQ(sCodeInside, CoreErrorCodes::kNotSupported);
  EXPECT_EQ(UnregisterForNotifications(nullptr, &Receive), CoreErrorCodes::kSuccess);
}

// --- Folders

TEST_F(EntriesTest, FoldersAreMadeWithoutAnAgent) {
  const std::string folder = m_home.Folder().Path("one/two");
  const std::string file = m_home.Folder().Write("file", "");
  EXPECT_EQ(OSDoesDirectoryExist(Facade(), folder.c_str()), GFileSystem::kDirectoryNotFound);
  EXPECT_EQ(OSCreateDirectory(Facade(), folder.c_str()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(OSCreateDirectory(Facade(), folder.c_str()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(OSDoesDirectoryExist(Facade(), folder.c_str()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(OSDoesDirectoryExist(Facade(), file.c_str()), GFileSystem::kDirectoryNotFound);
  EXPECT_EQ(OSCreateDirectory(Facade(), file.c_str()), GFileSystem::kFileOrDirectoryAlreadyExists);
  EXPECT_EQ(OSCreateDirectory(Facade(), (file + "/below").c_str()),
            GFileSystem::kFileOrDirectoryAlreadyExists);
  EXPECT_EQ(OSCreateDirectory(Facade(), "/proc/none"), GOspreyExportFonts::kCouldNotCreateFolder);
  EXPECT_EQ(OSCreateDirectory(Facade(), ""), GFileSystem::kInvalidPath);
}

// --- The library's own calls

TEST_F(EntriesTest, AListOfFontsThatNeverEndsIsRefused) {
  FakeAgent agent([](const auto& request, auto& reply) {
    if (!request.has_list_fonts()) return;
    reply.mutable_list_fonts()->add_fonts()->set_id(1);
    reply.mutable_list_fonts()->set_more(true);
  });
  const auto fonts = MakeArray();
  EXPECT_EQ(KilnLibraryListFonts(Facade(), fonts.get()), GKVMessageDataHandler::kInvalidMessage);
  EXPECT_EQ(CFArrayGetCount(fonts.get()), 0);
}

}  // namespace
