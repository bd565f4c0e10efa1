#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

#include "EntriesFixture.h"
#include "GErrorCodes.h"

namespace {

using kiln::wire::ClientMessage;
using XCFUtils::GetStringFromDict;

std::string Texts(CFDictionaryRef record) {
  std::string texts;
  for (CFStringRef key : {RecordKeys::kDatabaseID, RecordKeys::kKind, RecordKeys::kActivationStatus,
                          RecordKeys::kIsActive, RecordKeys::kIsTemp}) {
    texts += GetStringFromDict(record, key) + " ";
  }
  return texts;
}

class ActivationEntriesTest : public EntriesTest {};

TEST_F(ActivationEntriesTest, ADocumentsFontsAreMatchedInOneCallAndTheirRecordsSayWhatIsKnown) {
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

TEST_F(ActivationEntriesTest, AHostileAnswerToADocumentIsReadWithCare) {
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

TEST_F(ActivationEntriesTest, FailedAndRefusedFontsAreToldWithinTheirCapacities) {
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

TEST_F(ActivationEntriesTest, APreviewThatThisProcessCannotSeeIsGivenBackEvenBesideARefusedOne) {
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
TEST_F(ActivationEntriesTest, WhatAnAgentDidBeforeItDiedIsNeitherForgottenNorShownOn) {
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

TEST_F(ActivationEntriesTest, WhileTheAgentIsAwayThisProcessHoldsWhatItActivatedButNotWhatTheUserDid) {
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

}  // namespace
