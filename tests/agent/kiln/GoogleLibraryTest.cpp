// The Google library of a real Kiln, with a folder of the test's.

#include "KilnSourcesHome.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

class GoogleLibraryTest : public KilnSourcesHome {
 protected:
  uint32_t Set(bool enabled, const std::string& folder = "") {
    wire::ClientMessage request;
    request.mutable_set_google()->set_enabled(enabled);
    request.mutable_set_google()->set_folder(folder);
    return Ask(request).error();
  }
  wire::GoogleStateReply State() {
    wire::ClientMessage request;
    request.mutable_google_state();
    return Ask(request).google_state();
  }
};

TEST_F(GoogleLibraryTest, IsThereWhileItIsOnAndFollowsItsFolder) {
  EXPECT_EQ(Set(true), codes::kInvalidParam);
  EXPECT_EQ(Set(true, mFiles.Path("nowhere")), codes::kDirectoryNotFound);
  EXPECT_EQ(Workgroups(), "Own:3:0");
  PutFont("google/deep", "Roboto-Regular");
  PutFont("google", "Roboto-Bold");
  mFiles.Write("google/broken.ttf", "no font");
  ASSERT_EQ(Set(true, mFiles.Path("google")), 0u);
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kGoogleEnabled));
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kWorkgroupsChanged));
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_GOOGLE);
  EXPECT_EQ(Workgroups(), "Own:3:0 Google Fonts:8:2");
  const uint32_t font = mClient->IdOf("Roboto-Bold");
  ASSERT_NE(font, 0u);

  PutFont("google/new", "Roboto-Light");
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_GOOGLE) << "by the watch of the folder";
  EXPECT_NE(mClient->IdOf("Roboto-Light"), 0u);
  std::filesystem::remove(mFiles.Path("google/new/Roboto-Light.ttf"));
  EXPECT_TRUE(VaultComesTo(2));
  EXPECT_EQ(mClient->IdOf("Roboto-Light"), 0u);
  mFiles.Write("google/Roboto-Bold.ttf", FontBuilder{"Roboto-Black"}.TrueType());
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_GOOGLE);
  EXPECT_EQ(mClient->IdOf("Roboto-Bold"), 0u) << "its file holds another font now";
  EXPECT_NE(mClient->IdOf("Roboto-Black"), 0u);

  // As one is brought up to date that comes as a whole.
  PutFont("next", "Roboto-Thin");
  std::filesystem::rename(mFiles.Path("google"), mFiles.Path("before"));
  std::filesystem::rename(mFiles.Path("next"), mFiles.Path("google"));
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_GOOGLE);
  EXPECT_EQ(Workgroups(), "Own:3:0 Google Fonts:8:1");
}

TEST_F(GoogleLibraryTest, OffItIsHiddenButWhatIsActiveStaysSo) {
  PutFont("google", "Roboto-Regular");
  Set(true, mFiles.Path("google"));
  WaitForReplication();
  const uint32_t font = mClient->IdOf("Roboto-Regular");
  mClient->OpenDocument({"Roboto-Regular"});
  ASSERT_EQ(Set(false), 0u);
  EXPECT_EQ(Workgroups(), "Own:3:0");
  EXPECT_EQ(mClient->IdOf("Roboto-Regular"), 0u);
  EXPECT_TRUE(mClient->Holds(font));
  EXPECT_TRUE(FcListShows("Roboto-Regular"));
  EXPECT_EQ(mClient->Deactivate({font}).deactivated_ids_size(), 1);
  EXPECT_EQ(mClient->OpenDocument({"Roboto-Regular"}).matched_size(), 0);
  ASSERT_EQ(Set(true), 0u) << "with the folder of the last time";
  EXPECT_EQ(mClient->IdOf("Roboto-Regular"), font) << "at once, and the same font";
}

TEST_F(GoogleLibraryTest, SurvivesKilnAndSeesWhatChangedMeanwhile) {
  for (int i = 0; i < 300; ++i) PutFont("google", "Many-" + std::to_string(i));
  Set(true, mFiles.Path("google"));
  WaitFor(wire::ServerMessage::kReplication);
  RestartKiln();  // killed while it takes them over
  std::filesystem::remove(mFiles.Path("google/Many-7.ttf"));
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_GOOGLE);
  EXPECT_EQ(Workgroups(), "Own:3:0 Google Fonts:8:299");
  EXPECT_TRUE(VaultComesTo(299));
  EXPECT_TRUE(State().enabled());
  EXPECT_EQ(State().folder(), mFiles.Path("google"));
  EXPECT_TRUE(State().accessible());
}

TEST_F(GoogleLibraryTest, ARescanAnswersWhenAllIsReadAndRestoresWhatTheVaultHasLost) {
  PutFont("google", "Roboto-Regular");
  Set(true, mFiles.Path("google"));
  WaitForReplication();
  PutFont("google", "Roboto-Bold");
  mClient->AddFiles({FontFile("Lost-Regular")});
  const uint32_t lost = mClient->IdOf("Lost-Regular");
  for (const std::string& file : VaultFiles()) std::filesystem::remove(file);
  wire::ClientMessage request;
  request.mutable_rescan();
  const auto reply = Ask(request);
  EXPECT_EQ(reply.error(), 0u);
  EXPECT_EQ(reply.rescan().files_checked(), 2u);
  ASSERT_EQ(reply.rescan().missing_ids_size(), 1);
  EXPECT_EQ(reply.rescan().missing_ids(0), lost);
  EXPECT_EQ(Workgroups(), "Own:3:1 Google Fonts:8:2");
  EXPECT_EQ(mClient->OpenDocument({"Roboto-Regular", "Roboto-Bold"}).matched_size(), 2);
  while (WaitForReplication() != wire::REPLICATION_BULK) continue;
}

}  // namespace
}  // namespace kiln
