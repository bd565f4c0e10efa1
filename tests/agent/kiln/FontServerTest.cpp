// A real Kiln that works with a font server: a folder of the test's.

#include "KilnSourcesHome.h"
#include "kiln/sources/ServerConfiguration.h"
#include "protocol/ErrorCodes.h"
#include "protocol/PermissionColumns.h"

namespace kiln {
namespace {

class FontServerTest : public KilnSourcesHome {
 protected:
  FontServerTest() {
    PutFont("server/Ads", "Ads-Regular");
    PutFont("server/Ads", "Secret-Regular");
    PutFont("server/Books", "Books-Regular");
    PutFont("server/.trash", "Old-Regular");
    PutFont("server/Anna's own", "Anna-Regular");
    Configure("");
  }
  void Configure(const std::string& more) {
    mFiles.Write("server/server.conf",
                 "Users = anna, ben, carl, dora\n"
                 "workgroup.Anna's own.owner = anna  # hers alone\n"
                 "workgroup.Ads.Users = anna, ben\n"
                 "workgroup.Ads.export = anna\n"
                 "workgroup.Ads.refused = Secret-Regular\n"
                 "workgroup.Books.users = anna, carl, \n"
                 "across-workgroups = anna\n" +
                     more);
  }
  uint32_t LogIn(const std::string& user, const std::string& folder = "server") {
    wire::ClientMessage request;
    request.mutable_log_in()->set_server(mFiles.Path(folder));
    request.mutable_log_in()->set_user(user);
    return Ask(request).error();
  }
  uint32_t LogOut(bool leave = false) {
    wire::ClientMessage request;
    request.mutable_log_out()->set_leave(leave);
    return Ask(request).error();
  }
  wire::ServerStateReply State() {
    wire::ClientMessage request;
    request.mutable_server_state();
    return Ask(request).server_state();
  }
  // Into the user's own library, and out of it again.
  uint32_t TakeOver(uint32_t workgroup) {
    wire::ClientMessage list;
    list.mutable_list_fonts()->add_workgroup_ids(workgroup);
    wire::ClientMessage request;
    request.mutable_change_workgroup_fonts()->set_workgroup_id(1);
    request.mutable_change_workgroup_fonts()->add_font_ids(Ask(list).list_fonts().fonts(0).id());
    const uint32_t error = Ask(request).error();
    request.mutable_change_workgroup_fonts()->set_remove(true);
    Ask(request);
    return error;
  }
  bool AsPluginSeesIt(bool standalone, bool loggedIn) {
    wire::ClientMessage request;
    request.mutable_standalone();
    const bool alone = Ask(request).standalone().standalone();
    request.mutable_logged_in();
    return alone == standalone && Ask(request).logged_in().logged_in() == loggedIn;
  }
};

TEST_F(FontServerTest, EachUserGetsWhatTheConfigurationSays) {
  const struct {
    const char* user;
    const char* more;
    uint32_t error;
    const char* workgroups;
    bool across;
    bool exportAds;
  } cases[] = {
      {"eve", "", codes::kSignInFailed, "Own:3:0", true, false},
      {"anna", "", 0, "Own:3:0 Ads:1:2 Anna's own:2:1 Books:1:1", true, true},
      {"ben", "", 0, "Own:3:0 Ads:1:2", false, false},
      {"carl", "local-libraries = no", 0, "Books:1:1", false, false},
      {"dora", "local-libraries = no", 0, "", false, false},
      {"anyone", "users = *\nworkgroup.ads.users = *", 0, "Own:3:0 Ads:1:2", false, false},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.user);
    Configure(one.more);
    ASSERT_EQ(LogIn(one.user), one.error);
    if (one.error == 0) WaitForReplication();
    EXPECT_EQ(Workgroups(), one.workgroups);
    EXPECT_EQ(IsAllowed(kCanActivateAcrossWorkgroupsColumn), one.across);
    const uint32_t ads = WorkgroupID("Ads");
    EXPECT_EQ(ads != 0 && IsAllowed(kExportFontsColumn, ads), one.exportAds);
    if (ads != 0) {
      EXPECT_EQ(TakeOver(ads), one.exportAds ? 0 : codes::kFromRestrictedWorkgroup);
    }
    EXPECT_EQ(LogOut(), one.error == 0 ? 0 : codes::kNotLoggedIn);
  }
}

TEST_F(FontServerTest, LogInAndLogOutAreToldAndTheFirstTimeIsBulk) {
  EXPECT_TRUE(AsPluginSeesIt(true, true));
  EXPECT_EQ(LogIn("anna", "nowhere"), codes::kFailedToConnect);
  Configure("server-type = 3");
  ASSERT_EQ(LogIn("anna"), 0u);
  const auto told = mClient->WaitForEvent(wire::ServerMessage::kLogInState);
  EXPECT_TRUE(told->log_in_state().logged_in());
  EXPECT_EQ(told->log_in_state().server_type(), 3);
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kPermissionsChanged));
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kWorkgroupsChanged));
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_BULK);
  EXPECT_EQ(LogIn("ben"), codes::kAlreadyLoggedIn);
  EXPECT_TRUE(AsPluginSeesIt(false, true));

  const uint32_t font = mClient->IdOf("Books-Regular");
  mClient->OpenDocument({"Books-Regular"});
  ASSERT_EQ(LogOut(), 0u);
  EXPECT_FALSE(mClient->WaitForEvent(wire::ServerMessage::kLogInState)->log_in_state().logged_in());
  EXPECT_TRUE(AsPluginSeesIt(false, false));
  EXPECT_EQ(Workgroups(), "Own:3:0");
  EXPECT_TRUE(FcListShows("Books-Regular")) << "active until it is given back";
  EXPECT_EQ(mClient->Deactivate({font}).deactivated_ids_size(), 1);
  EXPECT_EQ(State().user(), "anna");

  ASSERT_EQ(LogIn("anna"), 0u);
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_FONT_SERVER);
  EXPECT_EQ(mClient->IdOf("Books-Regular"), font);
  EXPECT_EQ(LogOut(true), 0u);
  EXPECT_TRUE(AsPluginSeesIt(true, true));
}

TEST_F(FontServerTest, ARefusedFontIsMarked) {
  LogIn("anna");
  WaitForReplication();
  wire::ClientMessage request;
  request.mutable_list_fonts();
  const auto list = Ask(request).list_fonts();
  for (const auto& font : list.fonts()) {
    EXPECT_EQ(font.refused(), font.postscript_name() == "Secret-Regular");
  }
  EXPECT_EQ(mClient->OpenDocument({"Secret-Regular"}).problems(0).reason(), wire::ProblemFont::REFUSED);
  Configure("workgroup.ads.refused = ");
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kPermissionsChanged));
  EXPECT_EQ(mClient->OpenDocument({"Secret-Regular"}).matched_size(), 1);
}

TEST_F(FontServerTest, WhatHappensAtTheServerIsFollowed) {
  LogIn("carl");
  WaitForReplication();
  PutFont("server/Books", "Second-Regular");
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_FONT_SERVER);
  EXPECT_EQ(Workgroups(), "Own:3:0 Books:1:2");
  const uint32_t second = mClient->OpenDocument({"Second-Regular"}).matched(0).font().id();

  PutFont("server/Common", "Common-Regular");
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kWorkgroupsChanged));
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_FONT_SERVER);
  EXPECT_EQ(Workgroups(), "Own:3:0 Books:1:2 Common:1:1");

  std::filesystem::remove_all(mFiles.Path("server/Books"));
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kWorkgroupsChanged));
  EXPECT_EQ(Workgroups(), "Own:3:0 Common:1:1");
  EXPECT_TRUE(VaultComesTo(2)) << "one of the workgroup, and the active font";
  EXPECT_TRUE(FcListShows("Second-Regular"));
  mClient->Deactivate({second});
  EXPECT_TRUE(VaultComesTo(1)) << "nobody holds it any more";

  Configure("users = anna");
  EXPECT_FALSE(mClient->WaitForEvent(wire::ServerMessage::kLogInState)->log_in_state().logged_in());
  EXPECT_TRUE(AsPluginSeesIt(false, false));
}

TEST_F(FontServerTest, OfflineAllStaysAsItWasAlsoOverARestart) {
  LogIn("carl");
  WaitForReplication();
  std::filesystem::rename(mFiles.Path("server"), mFiles.Path("away"));
  EXPECT_FALSE(mClient->WaitForEvent(wire::ServerMessage::kOnlineState)->online_state().online());
  EXPECT_NE(mClient->IdOf("Books-Regular"), 0u);
  RestartKiln();
  EXPECT_TRUE(AsPluginSeesIt(false, true));
  EXPECT_FALSE(State().online());
  EXPECT_EQ(mClient->OpenDocument({"Books-Regular"}).matched_size(), 1);
  EXPECT_FALSE(IsAllowed(kCanActivateAcrossWorkgroupsColumn));
  std::filesystem::rename(mFiles.Path("away"), mFiles.Path("server"));
  EXPECT_TRUE(mClient->WaitForEvent(wire::ServerMessage::kOnlineState)->online_state().online());
}

TEST_F(FontServerTest, OwnLibrariesArentThereWhileTheServerWantsNone) {
  mClient->AddFiles({FontFile("Own-Regular")});
  Configure("local-libraries = no");
  LogIn("carl");
  EXPECT_EQ(mClient->IdOf("Own-Regular"), 0u);
  wire::ClientMessage request;
  request.mutable_create_workgroup()->set_name("Mine");
  EXPECT_EQ(Ask(request).error(), codes::kRestrictedWorkgroup);
  request.mutable_add_files()->add_paths(mFiles.Path("Own-Regular.ttf"));
  EXPECT_EQ(Ask(request).error(), codes::kWorkgroupNotFound);
  LogOut();
  EXPECT_NE(mClient->IdOf("Own-Regular"), 0u);
}

TEST(ServerConfigurationTest, NonsenseIsPassedOver) {
  const auto configuration = ServerConfiguration::Parse(
      "no line\n= 1\nserver-type = three\nusers = , ann a ,,b\nworkgroup.A.owner =\nworkgroup.a.users = b\n"
      "workgroup.A.refused = X-Bold,\tY-Bold\nlocal-libraries = perhaps\n");
  ASSERT_TRUE(configuration);
  EXPECT_TRUE(configuration->Knows("ann a"));
  EXPECT_FALSE(configuration->Knows(""));
  EXPECT_EQ(configuration->ServerType(), 1);
  EXPECT_TRUE(configuration->ListsLocalLibraries());
  const ServerConfiguration::Workgroup workgroup = configuration->For("A", "b");
  EXPECT_TRUE(workgroup.visible);
  EXPECT_FALSE(workgroup.personal);
  EXPECT_EQ(workgroup.refused, (std::set<std::string>{"X-Bold", "Y-Bold"}));
  EXPECT_TRUE(configuration->For("Unsaid", "b").exportAllowed);
}

}  // namespace
}  // namespace kiln
