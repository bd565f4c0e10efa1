#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <future>
#include <memory>

#include "FakeAgent.h"
#include "FontHome.h"
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

RetainPtr<CFMutableDictionaryRef> Record(const std::string& postScriptName) {
  auto record = MakeDictionary();
  XCFUtils::PutStringIntoDict(record.get(), RecordKeys::kPostScriptName, postScriptName);
  return record;
}

CFDictionaryRef At(const RetainPtr<CFMutableArrayRef>& array, CFIndex index) {
  return dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(array.get(), index));
}

std::string Texts(CFDictionaryRef record) {
  std::string texts;
  for (CFStringRef key : {RecordKeys::kDatabaseID, RecordKeys::kKind, RecordKeys::kActivationStatus,
                          RecordKeys::kIsActive, RecordKeys::kIsTemp}) {
    texts += GetStringFromDict(record, key) + " ";
  }
  return texts;
}

class EntriesTest : public testing::Test {
 protected:
  ~EntriesTest() override { CleanUpOnShutdown(Facade()); }
  static FacadeRef Facade() { return GetPluginFacadeInstance(); }

  FontHome m_fonts;
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

// --- Activation

TEST_F(EntriesTest, ADocumentsFontsAreMatchedInOneCallAndTheirRecordsSayWhatIsKnown) {
  FakeAgent agent([&](const auto& request, auto& reply) {
    if (!request.has_activate_document_fonts()) return;
    auto& answer = *reply.mutable_activate_document_fonts();
    for (const uint32_t index : {0u, 2u}) {
      auto& match = *answer.add_matched();
      match.set_request_index(index);
      match.mutable_font()->set_id(100 + index);
      match.mutable_font()->set_kind(kiln::wire::FONT_KIND_TRUETYPE);
      if (index == 0) match.mutable_font()->set_state(kiln::wire::ACTIVATION_PERMANENT);
    }
    answer.add_problems()->set_request_index(1);
  });
  const auto missing = Record("Missing-Regular");
  XCFUtils::PutStringIntoDict(missing.get(), RecordKeys::kFoundry, "Nobody");
  const auto used = Record("Used-Regular");
  CFDictionarySetValue(used.get(), RecordKeys::kSubDocumentsWithFont, ToCFArray({"doc/1", "doc/2"}).get());
  const auto embedded = MakeDictionary();
  const auto hints = MakeArray();
  CFArrayAppendValue(hints.get(), Record("Hint-Regular").get());
  CFDictionarySetValue(embedded.get(), RecordKeys::kEmbeddedFonts, hints.get());
  const auto fonts = MakeArray();
  const auto first = Record("First-Regular");
  for (CFTypeRef element : std::initializer_list<CFTypeRef>{first.get(), missing.get(), CFSTR("no record"),
                                                            used.get(), embedded.get()}) {
    CFArrayAppendValue(fonts.get(), element);
  }

  const auto matched = MakeArray();
  const auto problems = MakeArray();
  ASSERT_EQ(ActivateDocumentFontsByPath(Facade(), "/a/b.idml", fonts.get(), true, false, true, true, -2,
                                        matched.get(), problems.get()),
            CoreErrorCodes::kSuccess);
  EXPECT_EQ(agent.Requests().size(), 2u);  // the greeting and one call for all fonts
  const auto request = agent.Requests().back().activate_document_fonts();
  EXPECT_EQ(request.document_path(), "/a/b.idml");
  EXPECT_EQ(request.fonts_size(), 3);
  ASSERT_EQ(request.embedded_fonts_size(), 1);
  EXPECT_EQ(request.embedded_fonts(0).postscript_name(), "Hint-Regular");
  EXPECT_EQ(request.workgroup_id(), 0u);

  ASSERT_EQ(CFArrayGetCount(matched.get()), 2);
  EXPECT_EQ(Texts(At(matched, 0)), "100 TrueType 4 1 0 ");
  EXPECT_EQ(Texts(At(matched, 1)), "102 TrueType 0 0 0 ");
  const auto* documents =
      dynamicCF<CFArrayRef>(CFDictionaryGetValue(At(matched, 1), RecordKeys::kSubDocumentsWithFont));
  EXPECT_EQ(ToStringVector(documents), (std::vector<std::string>{"doc/1", "doc/2"}));

  ASSERT_EQ(CFArrayGetCount(problems.get()), 1);
  EXPECT_EQ(GetStringFromDict(At(problems, 0), RecordKeys::kFoundry), "Nobody");
  EXPECT_NE(dynamicCF<CFArrayRef>(CFDictionaryGetValue(At(problems, 0), RecordKeys::kPossibleReplacements)),
            nullptr);
  EXPECT_NE(dynamicCF<CFMutableDictionaryRef>(At(problems, 0)), nullptr);  // the resolver writes into it
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
  unsigned int refused = 0;
  unsigned int counts[] = {0, 0};
  EXPECT_EQ(ActivateFonts(Facade(), 4, ids, nullptr, 1, 1, 1, 2, 1, failed, &refused, &counts[0], &counts[1]),
            GOspreyAssetManager::kLicenseComplianceViolation);
  EXPECT_THAT(counts, testing::ElementsAre(2, 1));
  EXPECT_THAT(failed, testing::ElementsAre(1, 2, 99));
  EXPECT_EQ(refused, 4u);
}

TEST_F(EntriesTest, APreviewThatThisProcessCannotSeeIsGivenBackEvenBesideARefusedOne) {
  std::atomic<TErrCode> error = 0;
  FakeAgent agent([&](const auto& request, auto& reply) {
    if (request.has_deactivate_fonts()) reply.mutable_deactivate_fonts();
    if (!request.has_activate_fonts()) return;
    EXPECT_EQ(request.activate_fonts().mode(), kiln::wire::MODE_AUTO_LOCAL);
    reply.set_error(error);
    auto& font = *reply.mutable_activate_fonts()->add_fonts();
    font.set_id(6);
    font.set_path("/nowhere/at.all");
  });
  const unsigned int id = 6;
  EXPECT_EQ(PreviewActivateFonts(Facade(), 1, &id, 0), GFontActivation::kOSActivationError);
  error = GOspreyAssetManager::kLicenseComplianceViolation;
  EXPECT_EQ(PreviewActivateFonts(Facade(), 1, &id, 0), GOspreyAssetManager::kLicenseComplianceViolation);
  EXPECT_EQ(agent.Count(ClientMessage::kDeactivateFonts), 2);
}

// An agent that dies between its work and an answer, as often as it is told to.
TEST_F(EntriesTest, WhatAnAgentDidBeforeItDiedIsNeitherForgottenNorShownOn) {
  std::atomic<ClientMessage::BodyCase> losesAnswerTo = ClientMessage::kActivateFonts;
  std::atomic<kiln::wire::ActivationState> state = kiln::wire::ACTIVATION_INACTIVE;
  FakeAgent* self = nullptr;
  FakeAgent agent([&](const auto& request, auto& reply) {
    if (request.has_activate_fonts() || request.has_activate_document_fonts()) {
      auto& font = request.has_activate_fonts()
                       ? *reply.mutable_activate_fonts()->add_fonts()
                       : *reply.mutable_activate_document_fonts()->add_matched()->mutable_font();
      font.set_id(6);
      font.set_postscript_name(m_fonts.fonts[0].postScriptName);
      font.set_path(m_fonts.fonts[0].file);
      font.set_state(state.exchange(kiln::wire::ACTIVATION_AUTO));
    } else if (request.has_deactivate_fonts()) {
      reply.mutable_deactivate_fonts();
      state = kiln::wire::ACTIVATION_INACTIVE;
    } else if (request.has_font_is_activated()) {
      reply.mutable_font_is_activated()->add_states(state);
    } else if (request.has_client_activation_states()) {
      reply.mutable_client_activation_states()->add_activated(true);
    }
    ClientMessage::BodyCase lost = request.body_case();
    if (losesAnswerTo.compare_exchange_strong(lost, ClientMessage::BODY_NOT_SET)) self->BreakConnections();
  });
  self = &agent;
  const unsigned int id = 6;
  const auto activate = [&] {
    return ActivateFonts(Facade(), 1, &id, nullptr, 1, 1, 1, 0, 0, nullptr, nullptr, nullptr, nullptr);
  };
  const auto fonts = MakeArray();
  const auto matched = MakeArray();
  CFArrayAppendValue(fonts.get(), Record(m_fonts.fonts[0].postScriptName).get());
  const auto open = [&] {
    return ActivateDocumentFontsByPath(Facade(), "", fonts.get(), true, false, true, true, 0, matched.get(),
                                       matched.get());
  };
  EXPECT_EQ(activate(), GAgentIF::kShutdown);
  losesAnswerTo = ClientMessage::kClientActivationStates;
  EXPECT_EQ(open(), GAgentIF::kShutdown) << "not known whose the font is: to be asked again";
  EXPECT_EQ(CFArrayGetCount(matched.get()), 0);
  ASSERT_EQ(open(), CoreErrorCodes::kSuccess);
  EXPECT_EQ(GetStringFromDict(At(matched, 0), RecordKeys::kIsActive), "0") << "this process brought it in";
  EXPECT_TRUE(FontHome::IsVisible(m_fonts.fonts[0].file));

  losesAnswerTo = ClientMessage::kDeactivateFonts;
  EXPECT_EQ(DeactivateFonts(Facade(), 1, &id, 0), GAgentIF::kShutdown);
  EXPECT_EQ(DeactivateFonts(Facade(), 1, &id, 0), CoreErrorCodes::kSuccess);
  EXPECT_FALSE(FontHome::IsVisible(m_fonts.fonts[0].file));
}

TEST_F(EntriesTest, WhileTheAgentIsAwayThisProcessHoldsWhatItActivatedButNotWhatTheUserDid) {
  const unsigned int ids[] = {6, 7};
  {
    FakeAgent agent([](const auto& request, auto& reply) {
      if (!request.has_activate_fonts()) return;
      for (const uint32_t id : request.activate_fonts().font_ids()) {
        reply.mutable_activate_fonts()->add_fonts()->set_id(id);
      }
    });
    const auto activate = [&](unsigned long count, int mode, int flagA) {
      return ActivateFonts(Facade(), count, ids, nullptr, mode, flagA, 1, 0, 0, nullptr, nullptr, nullptr,
                           nullptr);
    };
    ASSERT_EQ(activate(2, 1, 1), CoreErrorCodes::kSuccess);
    ASSERT_EQ(activate(1, 0, 0), CoreErrorCodes::kSuccess) << "by hand: the font is the user's now";
  }
  int held[] = {7, 7};
  EXPECT_EQ(GetClientFontActivationStates(2, ids, held), CoreErrorCodes::kSuccess);
  EXPECT_THAT(held, testing::ElementsAre(0, 1));
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
