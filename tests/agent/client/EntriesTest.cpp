#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <future>
#include <memory>

#include "EntriesFixture.h"
#include "GErrorCodes.h"
#include "GFileSystem.h"
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

TEST_F(EntriesTest, TheAbsenceOfASoundAgentIsToldByTheStartUpCalls) {
  const FakeAgent::Behaviour refuseTheVersion = [](int socket) {
    FakeAgent::Request request;
    if (!FakeAgent::ReceiveFrame(socket, request)) return;
    auto reply = FakeAgent::ReplyTo(request.id());
    reply.set_error(CoreErrorCodes::kVersionMismatch);
    FakeAgent::SendFrame(socket, reply);
  };
  const struct {
    const char* name;
    bool processRuns;
    FakeAgent::Behaviour behaviour;  // none: nobody listens
    TErrCode initApp;
    TErrCode running;
    TErrCode initThread;
    int inSync;  // -1: the status isn't 0
  } cases[] = {{"no process", false, {}, 0, 0, GOspreyConfig::kAgentNotFound, -1},
               {"never listens",
                true,
                {},
                0,
                GIPCClient::kServiceUnavailable,
                GOspreyConfig::kAgentRunningInWrongMode,
                -1},
               {"another protocol", true, refuseTheVersion, CoreErrorCodes::kVersionMismatch,
                CoreErrorCodes::kVersionMismatch, GOspreyConfig::kAgentRunningInWrongMode, 0}};
  const auto start = [](const auto& test) {
    EXPECT_EQ(InitAppInstance(Facade(), 4, 0), test.initApp);
    int running = 7;
    EXPECT_EQ(GetIsCoreAgentProcessRunning(Facade(), &running), test.running);
    EXPECT_EQ(running, test.running == 0 ? 0 : 7);
    EXPECT_EQ(InitThreadInstance(Facade()), test.initThread);
    int inSync = 7;
    const TErrCode status = GetAreSchemaVersionsInSync(Facade(), &inSync);
    EXPECT_EQ(status == 0 ? inSync : -1, test.inSync);
    EXPECT_EQ(DestroyThreadInstance(Facade()), CoreErrorCodes::kSuccess);
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    ResetPluginFacadeInstance();
    m_processes.running.clear();
    if (test.processRuns) m_processes.running.push_back({1, "/opt/Kiln/Kiln"});
    if (test.behaviour) {
      const FakeAgent agent = FakeAgent::Misbehaving(test.behaviour);
      start(test);
    } else {
      start(test);
    }
  }
}

TEST_F(EntriesTest, AnAnswerOfAnotherKindIsNoAnswerAndTouchesNothing) {
  FakeAgent agent;  // answers everything with an empty reply
  int value = 7;
  unsigned int id = 7;
  CFMutableDictionaryRef info = nullptr;
  const auto font = Record("A");
  const auto list = MakeArray();
  const TErrCode codes[] = {GetIsLoggedIn(Facade(), &value),
                            GetFontIsActivated(Facade(), 1, &id, &value),
                            GetClientFontActivationStates(1, &id, &value),
                            GetFontConflicts(Facade(), 1, &id, &id),
                            GetFontInfoByID(Facade(), nullptr, 0, font.get(), nullptr, &info),
                            FindFontsInSameFamilyForActivation(font.get(), nullptr, 0, list.get()),
                            ExportFonts(Facade(), 1, &id, "/tmp/fonts", 0, 0),
                            KilnLibraryListSets(Facade(), list.get()),
                            KilnLibraryRescan(Facade(), nullptr, nullptr, font.get())};
  EXPECT_THAT(codes, testing::Each(GKVMessageDataHandler::kInvalidMessage));
  EXPECT_EQ(CanAccessGoogleFonts(Facade()), 0);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(id, 7u);
  EXPECT_EQ(info, nullptr);
  EXPECT_EQ(CFArrayGetCount(list.get()), 0);
  EXPECT_EQ(CFDictionaryGetCount(font.get()), 1);
}

TEST_F(EntriesTest, ArgumentsWithoutSenseSendNothing) {
  FakeAgent agent;
  unsigned int count = 7;
  const auto fonts = MakeArray();
  const auto immutable = adoptCF(CFArrayCreate(nullptr, nullptr, 0, &kCFTypeArrayCallBacks));
  auto* notMutable = const_cast<CFMutableArrayRef>(immutable.get());
  const auto open = [&](CFMutableArrayRef matched) {
    return ActivateDocumentFontsByPath(Facade(), "", fonts.get(), true, false, true, true, 0, matched,
                                       fonts.get());
  };
  const TErrCode missing[] = {GetFontsByPostscriptName(Facade(), nullptr, nullptr, 0, nullptr, 0, &count),
                              GetFontsByFamilyName(Facade(), "A", nullptr, 3, nullptr, 0, &count),
                              DeactivateFonts(Facade(), 2, nullptr, 0),
                              CreateTopLevelSet(Facade(), nullptr, "A", 2, 0, 0, 0, nullptr), open(nullptr)};
  EXPECT_THAT(missing, testing::Each(CoreErrorCodes::kNullPointer));
  const TErrCode senseless[] = {GetFontsByPostscriptName(Facade(), "\xFF", nullptr, 0, nullptr, 0, &count),
                                ExportFonts(Facade(), 0, nullptr, "", 0, 0), open(notMutable)};
  EXPECT_THAT(senseless, testing::Each(CoreErrorCodes::kInvalidParam));
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

TEST_F(EntriesTest, ASystemFontsRecordIsThereInEveryWorkgroup) {
  FakeAgent agent([](const auto& request, auto& reply) {
    if (!request.has_font_info()) return;
    auto& font = *reply.mutable_font_info()->mutable_font();
    font.set_id(request.font_info().font_id());
    font.set_is_system(font.id() == 6);
    if (!request.font_info().workgroup_ids().empty()) reply.set_error(CoreErrorCodes::kNotFound);
  });
  const unsigned int workgroup = 3;
  for (const auto& [font, code] :
       {std::pair("6", CoreErrorCodes::kSuccess), {"7", CoreErrorCodes::kNotFound}}) {
    const auto query = MakeDictionary();
    XCFUtils::PutStringIntoDict(query.get(), RecordKeys::kDatabaseID, font);
    CFMutableDictionaryRef info = nullptr;
    EXPECT_EQ(GetFontInfoByID(Facade(), &workgroup, 1, query.get(), nullptr, &info), code);
    EXPECT_EQ(adoptCF(info) != nullptr, code == CoreErrorCodes::kSuccess);
  }
}

TEST_F(EntriesTest, AForkThatExitsLeavesTheConnectionToItsParent) {
  FakeAgent agent;
  ASSERT_EQ(EnableDesignActivation(Facade()), CoreErrorCodes::kSuccess);
  EXPECT_EXIT(std::exit(0), testing::ExitedWithCode(0), "");
  EXPECT_EQ(EnableDesignActivation(Facade()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(agent.Count(ClientMessage::kHello), 1);
}

// --- Notifications

std::atomic<TErrCode> sCodeInside = 0;
std::atomic<FacadeRef> sFacade = nullptr;
std::string sHeard;
std::promise<void>* sEnd = nullptr;

std::string Describe(int kind, void* data) {
  if (data == nullptr) return {};
  switch (kind) {
    case kNotification_OnlineStateChanged:
    case kNotification_GoogleWebFontsEnabled:
      return *static_cast<bool*>(data) ? ":on" : ":off";
    case kNotification_FontActivated:
    case kNotification_FontDeactivated:
    case kNotification_FontMissing:
    case kNotification_DesignActivationNonCompliant:
      return ":" + std::to_string(*static_cast<unsigned int*>(data));
    default:
      break;
  }
  std::string text;
  const auto* dictionary = static_cast<CFDictionaryRef>(data);
  for (CFStringRef key : {RecordKeys::kIsLoggedIn, RecordKeys::kServerType, RecordKeys::kText,
                          RecordKeys::kStepIndex, RecordKeys::kNumSteps}) {
    CFTypeRef value = CFDictionaryGetValue(dictionary, key);
    int number = 0;
    if (auto* flag = dynamicCF<CFBooleanRef>(value)) text += CFBooleanGetValue(flag) ? ":in" : ":out";
    if (auto* asText = dynamicCF<CFStringRef>(value)) text += ":" + ToStdString(asText);
    if (auto* asNumber = dynamicCF<CFNumberRef>(value)) {
      CFNumberGetValue(asNumber, kCFNumberSInt32Type, &number);
      text += ":" + std::to_string(number);
    }
  }
  return text;
}

int Hear(int kind, void* data) {
  int running = 0;
  sCodeInside = GetIsCoreAgentProcessRunning(sFacade, &running);
  sHeard += std::to_string(kind) + Describe(kind, data) + " ";
  if (kind == kNotification_AgentShutdown) sEnd->set_value();
  return 0;
}

TEST_F(EntriesTest, EveryEventReachesItsReceiverWithTheDataOfItsKind) {
  std::promise<void> end;
  sEnd = &end;
  sHeard.clear();
  FakeAgent agent;
  ASSERT_EQ(RegisterForNotifications(Facade(), &Hear), CoreErrorCodes::kSuccess);
  EXPECT_EQ(RegisterForNotifications(Facade(), &Hear), CoreErrorCodes::kItemAlreadyExists);
  ResetPluginFacadeInstance();  // it stays registered
  sFacade = Facade();
  ASSERT_EQ(EnableDesignActivation(Facade()), CoreErrorCodes::kSuccess);
  std::vector<FakeAgent::Reply> events;
  events.emplace_back().mutable_online_state();
  events.emplace_back().mutable_log_in_state()->set_logged_in(true);
  events.back().mutable_log_in_state()->set_server_type(3);
  events.emplace_back().mutable_workgroups_changed();
  events.emplace_back().mutable_permissions_changed();
  events.emplace_back().mutable_fonts_activated()->add_fonts()->set_font_id(42);
  events.emplace_back().mutable_fonts_deactivated()->add_fonts()->set_font_id(43);
  events.emplace_back().mutable_fonts_missing()->add_font_ids(5);
  events.back().mutable_fonts_missing()->add_font_ids(0xFFFFFFFF);
  events.emplace_back().mutable_google_enabled()->set_enabled(true);
  for (uint32_t kind = 0; kind <= 4; ++kind) {  // the last is a newer agent's
    auto& replication = *events.emplace_back().mutable_replication();
    replication.set_kind(static_cast<kiln::wire::ReplicationKind>(kind));
    replication.set_text("Fünf");
    replication.set_step(kind);
    replication.set_step_count(0xFFFFFFFF);
    events.push_back(FakeAgent::Reply(events.back()));
    events.back().mutable_replication()->set_stopped(true);
  }
  events.emplace_back().mutable_sets_changed();
  events.emplace_back().mutable_library_changed();
  events.emplace_back().mutable_compliance_refused()->add_font_ids(9);
  events.emplace_back().mutable_shutdown();
  for (const auto& event : events) agent.SendEvent(event);
  end.get_future().wait();
  EXPECT_EQ(sHeard,
            "1:off 2:in:3 3 4 8:42 9:43 10:5 10:4294967295 14:on 19:Fünf:0:2147483647 20 "
            "21:Fünf:1:2147483647 22 15:Fünf:2:2147483647 16 27:Fünf:3:2147483647 28 18 23 23 24:9 0 ");
  EXPECT_EQ(sCodeInside, CoreErrorCodes::kNotSupported);
  EXPECT_EQ(UnregisterForNotifications(nullptr, &Hear), CoreErrorCodes::kSuccess);
}

// --- Folders

TEST_F(EntriesTest, FoldersAreMadeWithoutAnAgent) {
  const std::string folder = m_home.Folder().Path("one/two");
  const std::string file = m_home.Folder().Write("file", "");
  EXPECT_EQ(OSDoesDirectoryExist(Facade(), folder.c_str()), GFileSystem::kDirectoryNotFound);
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(OSCreateDirectory(Facade(), folder.c_str()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(OSDoesDirectoryExist(Facade(), folder.c_str()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(OSDoesDirectoryExist(Facade(), file.c_str()), GFileSystem::kDirectoryNotFound);
  for (const std::string& path : {file, file + "/below"}) {
    EXPECT_EQ(OSCreateDirectory(Facade(), path.c_str()), GFileSystem::kFileOrDirectoryAlreadyExists);
  }
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

TEST_F(EntriesTest, AnExportTellsOfEachFontThoughItFailedAsAWhole) {
  FakeAgent agent([](const auto& request, auto& reply) {
    if (!request.has_export_fonts()) return;
    EXPECT_TRUE(request.export_fonts().destination().ends_with("/below"));
    EXPECT_TRUE(request.export_fonts().destination().starts_with("/"));
    reply.set_error(GFileSystem::kDiskFull);
    reply.mutable_export_fonts()->add_fonts()->set_path("/a.otf");
    reply.mutable_export_fonts()->add_fonts()->set_error(GFileSystem::kDiskFull);
  });
  const unsigned int ids[] = {1, 2};
  const auto results = MakeArray();
  EXPECT_EQ(KilnLibraryExportFonts(Facade(), 2, ids, "below", nullptr, nullptr, results.get()),
            GFileSystem::kDiskFull);
  ASSERT_EQ(CFArrayGetCount(results.get()), 2);
  EXPECT_EQ(GetStringFromDict(At(results, 0), CFSTR("message")), "");
  EXPECT_EQ(GetStringFromDict(At(results, 1), CFSTR("message")), "The disk is full.");
}

TEST_F(EntriesTest, OfSeveralReplicationsTheLowestModeIsTold) {
  std::atomic<bool> runs = true;
  FakeAgent agent([&](const auto& request, auto& reply) {
    if (!request.has_replication_state()) return;
    reply.mutable_replication_state();
    if (!runs) return;
    reply.mutable_replication_state()->add_running(kiln::wire::REPLICATION_FONT_SERVER);
    reply.mutable_replication_state()->add_running(kiln::wire::REPLICATION_INCREMENTAL);
  });
  for (const bool running : {true, false}) {
    runs = running;
    int flag = 7;
    int mode = 7;
    EXPECT_EQ(GetIsReplicationRunning(Facade(), &flag), CoreErrorCodes::kSuccess);
    EXPECT_EQ(GetCurrentReplicationMode(Facade(), &mode), CoreErrorCodes::kSuccess);
    EXPECT_EQ(flag, running ? 1 : 0);
    EXPECT_EQ(mode, running ? 1 : -1);
  }
}

}  // namespace
