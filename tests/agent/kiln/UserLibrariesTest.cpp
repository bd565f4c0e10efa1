// Libraries that the user makes, changes and deletes, at a real Kiln.

#include "KilnSourcesHome.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

class UserLibrariesTest : public KilnSourcesHome {
 protected:
  UserLibrariesTest() { mClient->AddFiles({FontFile("Testa-Regular"), FontFile("Testa-Bold")}); }

  uint32_t Create(const std::string& name) {
    wire::ClientMessage request;
    request.mutable_create_workgroup()->set_name(name);
    const auto reply = Ask(request);
    mError = reply.error();
    return reply.create_workgroup().workgroup_id();
  }
  uint32_t Rename(uint32_t id, const std::string& name) {
    wire::ClientMessage request;
    request.mutable_rename_workgroup()->set_workgroup_id(id);
    request.mutable_rename_workgroup()->set_name(name);
    return Ask(request).error();
  }
  uint32_t Delete(uint32_t id) {
    wire::ClientMessage request;
    request.mutable_delete_workgroup()->set_workgroup_id(id);
    return Ask(request).error();
  }
  wire::ServerMessage Change(uint32_t workgroup, std::vector<uint32_t> fonts, bool remove = false) {
    wire::ClientMessage request;
    request.mutable_change_workgroup_fonts()->set_workgroup_id(workgroup);
    request.mutable_change_workgroup_fonts()->mutable_font_ids()->Add(fonts.begin(), fonts.end());
    request.mutable_change_workgroup_fonts()->set_remove(remove);
    return Ask(request);
  }

  uint32_t mError = 0;
};

TEST_F(UserLibrariesTest, NamesAreCheckedAndWhatIsNotTheUsersIsLeftAlone) {
  const uint32_t first = Create("Posters");
  ASSERT_NE(first, 0u);
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kWorkgroupsChanged));
  std::string longest;
  for (int i = 0; i < 127; ++i) longest += "\xF0\x9F\x98\x80";  // two units of UTF-16 each
  const struct {
    std::string name;
    uint32_t error;
  } cases[] = {{"", codes::kInvalidParam},
               {" \t", codes::kInvalidParam},
               {"Posters", codes::kItemAlreadyExists},
               {"System", codes::kItemAlreadyExists},
               {longest + "ab", codes::kInvalidParam},
               {longest + "a", 0}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    Create(one.name);
    EXPECT_EQ(mError, one.error);
  }
  EXPECT_EQ(Rename(first, "Posters"), 0u) << "its own name isn't taken";
  EXPECT_EQ(Rename(first, "System"), codes::kItemAlreadyExists);
  EXPECT_EQ(Rename(first, "Leaflets"), 0u);
  EXPECT_EQ(WorkgroupID("Leaflets"), first);
  for (const uint32_t fixed : {1u, 2u}) {
    EXPECT_EQ(Rename(fixed, "Mine"), codes::kRestrictedWorkgroup);
    EXPECT_EQ(Delete(fixed), codes::kRestrictedWorkgroup);
  }
  EXPECT_EQ(Delete(4711), codes::kWorkgroupNotFound);
  EXPECT_EQ(Change(2, {1}).error(), codes::kRestrictedWorkgroup);
  EXPECT_EQ(Change(4711, {1}).error(), codes::kWorkgroupNotFound);
}

TEST_F(UserLibrariesTest, AFontStandsInSeveralLibrariesAndGoesWithTheLast) {
  const uint32_t regular = mClient->IdOf("Testa-Regular");
  const uint32_t bold = mClient->IdOf("Testa-Bold");
  const uint32_t posters = Create("Posters");
  EXPECT_EQ(Change(posters, {regular, regular, 4711}).error(), 0u);
  EXPECT_EQ(Workgroups(), "Own:3:2 Posters:3:1");
  EXPECT_EQ(Change(1, {regular}, true).error(), 0u);
  EXPECT_EQ(mClient->IdOf("Testa-Regular"), regular);
  EXPECT_EQ(Delete(posters), 0u);
  EXPECT_EQ(Workgroups(), "Own:3:2") << "its only font went over";
  mClient->OpenDocument({"Testa-Bold"});
  const auto kept = Change(1, {regular, bold}, true);
  ASSERT_EQ(kept.change_workgroup_fonts().kept_ids_size(), 1);
  EXPECT_EQ(kept.change_workgroup_fonts().kept_ids(0), bold);
  EXPECT_EQ(mClient->IdOf("Testa-Regular"), 0u);
  EXPECT_TRUE(VaultComesTo(1));
  EXPECT_TRUE(FcListShows("Testa-Bold"));
  EXPECT_EQ(mClient->AddFiles({FontFile("Testa-Regular")}).files_added(), 1u) << "as new";
}

TEST_F(UserLibrariesTest, OfACollectionTheLastFaceTakesTheFileWithIt) {
  FontBuilder other;
  other.postScriptName = "Testa-Other";
  FontBuilder third;
  third.postScriptName = "Testa-Third";
  const std::string file = mFiles.Write("both.ttc", FontBuilder::Collection({other, third}));
  mClient->AddFiles({file});
  EXPECT_EQ(Change(1, {mClient->IdOf("Testa-Other")}, true).error(), 0u);
  EXPECT_EQ(mClient->IdOf("Testa-Other"), 0u);
  EXPECT_NE(mClient->IdOf("Testa-Third"), 0u);
  EXPECT_EQ(mClient->AddFiles({file}).files_known(), 1u);
  EXPECT_NE(mClient->IdOf("Testa-Other"), 0u) << "added again";
  EXPECT_EQ(Change(1, {mClient->IdOf("Testa-Other"), mClient->IdOf("Testa-Third")}, true).error(), 0u);
  EXPECT_TRUE(VaultComesTo(2));
}

TEST_F(UserLibrariesTest, AddingFilesIsToldAsAReplicationAndByItsFonts) {
  EXPECT_EQ(WaitForReplication(), wire::REPLICATION_INCREMENTAL);
  EXPECT_TRUE(WaitFor(wire::ServerMessage::kLibraryChanged));
  wire::ClientMessage request;
  request.mutable_add_files()->add_paths(mFiles.Path("Testa-Bold.ttf"));
  request.mutable_add_files()->set_workgroup_id(Create("Posters"));
  EXPECT_EQ(Ask(request).add_files().fonts_added(), 0u);
  const auto event = mClient->WaitForEvent(wire::ServerMessage::kLibraryChanged);
  EXPECT_EQ(event->library_changed().font_ids(0), mClient->IdOf("Testa-Bold")) << "new in that library";
}

}  // namespace
}  // namespace kiln
