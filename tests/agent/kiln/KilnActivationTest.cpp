// Who has a font active: one or two clients and the user, against a real Kiln.

#include <sys/wait.h>
#include <unistd.h>

#include "KilnTestHome.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

class KilnActivationTest : public KilnTestHome {
 protected:
  KilnActivationTest() {
    StartKiln();
    mFirst = std::make_unique<WireClient>(WireClient::kFirstUuid);
    mFirst->AddFiles({FontFile("Testa-Regular"), FontFile("Testa-Bold"), FontFile("Other-Regular", "Other")});
    mFont = mFirst->IdOf("Testa-Regular");
  }
  void Reconnect() { mFirst = std::make_unique<WireClient>(WireClient::kFirstUuid); }

  std::unique_ptr<WireClient> mFirst;
  uint32_t mFont = 0;
};

TEST_F(KilnActivationTest, ADocumentsFontsComeAndGoForEveryProgram) {
  EXPECT_FALSE(FcListShows("Testa-Regular"));
  const auto reply = mFirst->OpenDocument({"Testa-Regular", "Nobodys-Font", "Other-Regular"});
  ASSERT_EQ(reply.matched_size(), 2);
  EXPECT_EQ(reply.matched(0).font().id(), mFont);
  EXPECT_FALSE(reply.matched(0).was_active());
  EXPECT_EQ(reply.matched(0).font().state(), wire::ACTIVATION_INACTIVE) << "as it was before";
  EXPECT_EQ(reply.matched(1).request_index(), 2u);
  ASSERT_EQ(reply.problems_size(), 1);
  EXPECT_EQ(reply.problems(0).request_index(), 1u);
  EXPECT_EQ(reply.problems(0).reason(), wire::ProblemFont::NOT_FOUND);
  const auto event = mFirst->WaitForEvent(wire::ServerMessage::kFontsActivated);
  ASSERT_TRUE(event);
  ASSERT_EQ(event->fonts_activated().fonts_size(), 2);
  EXPECT_TRUE(event->fonts_activated().fonts(0).path().ends_with("/fonts/kiln/000/Testa-Regular.ttf"));
  EXPECT_TRUE(FcListShows("Testa-Regular"));
  EXPECT_FALSE(FcListShows("Testa-Bold")) << "per file, never per family";

  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_AUTO);
  EXPECT_TRUE(mFirst->Holds(mFont));
  const auto again = mFirst->OpenDocument({"Testa-Regular"});
  EXPECT_TRUE(again.matched(0).was_active());
  EXPECT_TRUE(mFirst->Holds(mFont));

  const auto given = mFirst->Deactivate({mFont, 4711});
  EXPECT_EQ(given.deactivated_ids_size(), 1);
  EXPECT_TRUE(mFirst->WaitForEvent(wire::ServerMessage::kFontsDeactivated));
  EXPECT_FALSE(FcListShows("Testa-Regular"));
  EXPECT_TRUE(FcListShows("Other-Regular"));
}

TEST_F(KilnActivationTest, TheFirstClientsClosingLeavesTheSecondItsFont) {
  mFirst->OpenDocument({"Testa-Regular"});
  WireClient second(WireClient::kSecondUuid);
  EXPECT_TRUE(second.OpenDocument({"Testa-Regular"}).matched(0).was_active());
  EXPECT_FALSE(second.Holds(mFont)) << "a hold isn't the client's own activation";
  EXPECT_EQ(mFirst->Deactivate({mFont}).deactivated_ids_size(), 0);
  EXPECT_EQ(second.StateOf(mFont), wire::ACTIVATION_AUTO);
  second.Close();
  EXPECT_TRUE(mFirst->WaitForEvent(wire::ServerMessage::kFontsDeactivated))
      << "the hold ends with its session";
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_INACTIVE);
}

TEST_F(KilnActivationTest, AClientGivesBackOnlyItsOwn) {
  mFirst->OpenDocument({"Testa-Regular"});
  WireClient second(WireClient::kSecondUuid);
  EXPECT_EQ(second.Deactivate({mFont}).released_ids_size(), 0);
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_AUTO);
}

TEST_F(KilnActivationTest, WhatTheUserActivatesStaysAndIsTakenOverFromClients) {
  mFirst->OpenDocument({"Testa-Regular"});
  WireClient user(WireClient::kSecondUuid);
  user.Activate({mFont}, wire::MODE_PERMANENT);
  EXPECT_FALSE(mFirst->Holds(mFont));
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_PERMANENT);
  EXPECT_EQ(mFirst->Deactivate({mFont}).released_ids_size(), 0);
  EXPECT_TRUE(mFirst->OpenDocument({"Testa-Regular"}).matched(0).was_active());
  EXPECT_FALSE(mFirst->Holds(mFont));
  user.Close();
  KillKiln();
  StartKiln();
  Reconnect();
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_PERMANENT);
  EXPECT_TRUE(FcListShows("Testa-Regular"));
  EXPECT_EQ(mFirst->Deactivate({mFont}, true).deactivated_ids_size(), 1) << "the user's wish";
}

TEST_F(KilnActivationTest, DeactivatingByHandTakesAFontFromEverybody) {
  mFirst->OpenDocument({"Testa-Regular"});
  WireClient user(WireClient::kSecondUuid);
  EXPECT_EQ(user.Deactivate({mFont}, true).deactivated_ids_size(), 1);
  EXPECT_FALSE(mFirst->Holds(mFont));
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_INACTIVE);
}

TEST_F(KilnActivationTest, ConflictsShowInTheStateOfWhatTheUserActivated) {
  FontBuilder twin;
  twin.version = "Version 2.000";
  mFirst->AddFiles({mFiles.Write("twin.ttf", [&] {
    twin.postScriptName = "Testa-Regular";
    return twin.TrueType();
  }())});
  const uint32_t newer = mFirst->IdOf("Testa-Regular");
  ASSERT_NE(newer, mFont) << "the newer version comes first";
  mFirst->Activate({mFont}, wire::MODE_PERMANENT);
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_PERMANENT);
  mFirst->Activate({newer}, wire::MODE_TEMPORARY);
  EXPECT_EQ(mFirst->StateOf(newer), wire::ACTIVATION_TEMPORARY_OVER_CONFLICT);
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_OVER_CONFLICT);
}

TEST_F(KilnActivationTest, LocalActivationsAreOneClientsAffair) {
  WireClient second(WireClient::kSecondUuid);
  mFirst->Activate({mFont}, wire::MODE_AUTO_LOCAL);
  const auto event = mFirst->WaitForEvent(wire::ServerMessage::kFontsActivated);
  ASSERT_TRUE(event);
  EXPECT_TRUE(event->fonts_activated().local());
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_AUTO_LOCAL);
  EXPECT_EQ(second.StateOf(mFont), wire::ACTIVATION_INACTIVE);
  EXPECT_FALSE(FcListShows("Testa-Regular"));
  EXPECT_FALSE(second.OpenDocument({"Testa-Regular"}).matched(0).was_active());
  EXPECT_TRUE(FcListShows("Testa-Regular"));
}

TEST_F(KilnActivationTest, AWholeFamilyComesWithItsFontWhenAskedFor) {
  wire::ClientMessage request;
  request.mutable_activate_document_fonts()->add_fonts()->set_postscript_name("Testa-Regular");
  request.mutable_activate_document_fonts()->set_activate_entire_family(true);
  const auto reply = mFirst->Ask(request).activate_document_fonts();
  ASSERT_EQ(reply.matched_size(), 2);
  EXPECT_FALSE(reply.matched(0).family_member());
  EXPECT_EQ(reply.matched(1).font().postscript_name(), "Testa-Bold");
  EXPECT_TRUE(reply.matched(1).family_member());
}

TEST_F(KilnActivationTest, TheDocumentsOwnDataPicksTheFont) {
  FontBuilder twin;
  twin.version = "Version 9.000";
  mFirst->AddFiles({mFiles.Write("twin.ttf", twin.TrueType())});
  wire::ClientMessage request;
  auto& document = *request.mutable_activate_document_fonts();
  document.add_fonts()->set_postscript_name("Testa-Regular");
  wire::FontIdentity& embedded = *document.add_embedded_fonts();
  embedded.set_postscript_name("Testa-Regular");
  embedded.set_version("1.000");
  document.set_glyph_mark_enabled(true);
  EXPECT_EQ(mFirst->Ask(request).activate_document_fonts().matched(0).font().version(), "1.000");
  mFirst->Deactivate({mFont});
  document.set_glyph_mark_enabled(false);
  EXPECT_EQ(mFirst->Ask(request).activate_document_fonts().matched(0).font().version(), "9.000");
}

TEST_F(KilnActivationTest, AKilledKilnsActivationsAreFoundAgainByTheirClient) {
  mFirst->OpenDocument({"Testa-Regular", "Testa-Bold"});
  KillKiln();
  std::filesystem::remove(mHome.Folder().Path("data/fonts/kiln/000/Testa-Bold.ttf"));
  mHome.Folder().Write("data/fonts/kiln/000/keep.ttf", "not Kiln's");
  StartKiln();
  Reconnect();
  EXPECT_TRUE(mFirst->Holds(mFont));
  EXPECT_TRUE(FcListShows("Testa-Bold")) << "the link that had gone is back";
  EXPECT_EQ(mFirst->Deactivate({mFont}).deactivated_ids_size(), 1);
}

TEST_F(KilnActivationTest, ActivationsOutliveAClosedConnectionButNotItsProcessAndKiln) {
  const pid_t child = fork();
  if (child == 0) {
    WireClient client(WireClient::kSecondUuid);
    client.OpenDocument({"Testa-Bold"});
    _exit(0);
  }
  waitpid(child, nullptr, 0);
  const uint32_t bold = mFirst->IdOf("Testa-Bold");
  EXPECT_EQ(mFirst->StateOf(bold), wire::ACTIVATION_AUTO) << "its documents may be open still";
  mFirst->OpenDocument({"Testa-Regular"});
  KillKiln();
  StartKiln();
  Reconnect();
  EXPECT_EQ(mFirst->StateOf(bold), wire::ACTIVATION_INACTIVE);
  EXPECT_FALSE(FcListShows("Testa-Bold"));
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_AUTO) << "this process still runs";
}

TEST_F(KilnActivationTest, AVaultFileThatHasGoneIsAProblemUntilItIsAddedAgain) {
  wire::ClientMessage request;
  request.mutable_font_info()->set_font_id(mFont);
  const std::string path = mFirst->Ask(request).font_info().font().path();
  ASSERT_TRUE(std::filesystem::remove(path));
  const auto reply = mFirst->OpenDocument({"Testa-Regular"});
  ASSERT_EQ(reply.problems_size(), 1);
  EXPECT_EQ(reply.problems(0).reason(), wire::ProblemFont::FILE_MISSING);
  EXPECT_EQ(mFirst->Activate({mFont}, wire::MODE_AUTO).failed_ids_size(), 1);
  EXPECT_EQ(mFirst->StateOf(mFont), wire::ACTIVATION_MISSING);
  EXPECT_EQ(mFirst->AddFiles({FontFile("Testa-Regular")}).files_known(), 1u);
  EXPECT_EQ(mFirst->OpenDocument({"Testa-Regular"}).matched_size(), 1);
}

TEST_F(KilnActivationTest, SystemFontsAreActiveAndNobodysToDeactivate) {
  FontBuilder font;
  font.postScriptName = "Systema-Regular";
  mHome.Folder().Write("data/fonts/systema.ttf", font.TrueType());
  uint32_t id = 0;
  for (int i = 0; i < 500 && id == 0; ++i) {  // noticed some moments later
    usleep(10000);
    id = mFirst->IdOf("Systema-Regular");
  }
  ASSERT_NE(id, 0u);
  const auto reply = mFirst->OpenDocument({"Systema-Regular"});
  ASSERT_EQ(reply.matched_size(), 1);
  EXPECT_TRUE(reply.matched(0).was_active());
  EXPECT_EQ(reply.matched(0).font().state(), wire::ACTIVATION_SYSTEM);
  EXPECT_EQ(reply.matched(0).font().workgroup_type(), wire::WORKGROUP_SYSTEM);
  EXPECT_FALSE(mFirst->Holds(id));
  EXPECT_EQ(mFirst->Deactivate({id}, true).deactivated_ids_size(), 0);
}

}  // namespace
}  // namespace kiln
