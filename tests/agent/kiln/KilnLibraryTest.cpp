// Adding files to the library of a real Kiln.

#include <sys/stat.h>

#include <fstream>
#include <thread>

#include "KilnTestHome.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

class KilnLibraryTest : public KilnTestHome {
 protected:
  KilnLibraryTest() { StartKiln(); }

  // "path-end:error" of each file, in the order of the results.
  static std::string Failures(const WireClient& client) {
    std::string failures;
    for (const auto& progress : client.Progress()) {
      for (const auto& file : progress.results()) {
        if (file.error() == 0) continue;
        char code[16];
        std::snprintf(code, sizeof code, ":%08x ", file.error());
        failures += file.path().substr(file.path().rfind('/') + 1) + code;
      }
    }
    return failures;
  }
  static uint32_t FontCount(WireClient& client) {
    wire::ClientMessage request;
    request.mutable_status();
    return client.Ask(request).status().font_count();
  }
};

TEST_F(KilnLibraryTest, AddsFilesAndFoldersAndNamesWhatItCouldNotRead) {
  FontFile("sub/Deep-Regular");
  mFiles.Write("sub/readme.txt", "not looked at in a folder");
  mFiles.Write("sub/damaged.otf", FontBuilder().OpenType().substr(0, 100));
  mFiles.Write("t1/Old.pfb", FontBuilder{"Old-Regular"}.Type1Segments());
  const std::string metrics = mFiles.Write("t1/Old.afm", "KPX A V -70\n");
  WireClient client;
  const auto totals =
      client.AddFiles({FontFile("Testa-Regular"), mFiles.Path("sub"), mFiles.Write("list.txt", "x"),
                       mFiles.Path("nowhere.ttf"), mFiles.Path("t1/Old.pfb"), metrics, mFiles.Path("sub")});
  EXPECT_EQ(totals.files_added(), 3u);
  EXPECT_EQ(totals.fonts_added(), 3u);
  EXPECT_EQ(totals.files_failed(), 3u);
  EXPECT_EQ(Failures(client), "damaged.otf:0500400d list.txt:0100400d nowhere.ttf:01001005 ");
  EXPECT_TRUE(client.WaitForEvent(wire::ServerMessage::kLibraryChanged));
  EXPECT_TRUE(std::filesystem::is_empty(mHome.Folder().Path("data/kiln/vault/incoming")));
}

TEST_F(KilnLibraryTest, TheSameContentIsThereOnce) {
  WireClient client;
  client.AddFiles({FontFile("Testa-Regular")});
  std::filesystem::copy(mFiles.Path("Testa-Regular.ttf"), mFiles.Path("copy.ttf"));
  const auto totals = client.AddFiles({mFiles.Path("copy.ttf")});
  EXPECT_EQ(totals.files_known(), 1u);
  EXPECT_EQ(FontCount(client), 1u);
  const std::string other = FontFile("Other-Regular");
  const auto twice = client.AddFiles({other, other});
  EXPECT_EQ(twice.files_added(), 1u);
  EXPECT_EQ(twice.files_known(), 1u);
}

TEST_F(KilnLibraryTest, TwoAtOnceBothLand) {
  std::vector<std::string> lists[2];
  for (int i = 0; i < 150; ++i) {
    for (int list = 0; list < 2; ++list) {
      lists[list].push_back(FontFile("List" + std::to_string(list) + "-" + std::to_string(i)));
    }
    const std::string shared = FontFile("Shared-" + std::to_string(i));
    lists[0].push_back(shared);
    lists[1].push_back(shared);
  }
  uint32_t added = 0;
  {
    WireClient first(WireClient::kFirstUuid);
    WireClient second(WireClient::kSecondUuid);
    std::thread other([&] { added = second.AddFiles(lists[1]).files_added(); });
    const uint32_t mine = first.AddFiles(lists[0]).files_added();
    other.join();
    added += mine;
  }
  WireClient client;
  EXPECT_EQ(added, 450u);
  EXPECT_EQ(FontCount(client), 450u);
}

TEST_F(KilnLibraryTest, EveryFaceOfACollectionIsAFontAndOneLinkShowsThem) {
  FontBuilder bold;
  bold.postScriptName = "Testa-Bold";
  WireClient client;
  client.AddFiles({mFiles.Write("both.ttc", FontBuilder::Collection({FontBuilder(), bold}))});
  const auto reply = client.OpenDocument({"Testa-Bold", "Testa-Regular"});
  ASSERT_EQ(reply.matched_size(), 2);
  EXPECT_EQ(reply.matched(0).font().link_path(), reply.matched(1).font().link_path());
  EXPECT_EQ(reply.matched(0).font().face_index(), 1u);
  client.Deactivate({reply.matched(0).font().id()});
  EXPECT_TRUE(FcListShows("Testa-Regular")) << "a face of the file is active still";
  client.Deactivate({reply.matched(1).font().id()});
  EXPECT_FALSE(FcListShows("Testa-Regular"));
}

TEST_F(KilnLibraryTest, NamesComeInTheOrderOfTheFilesAndListsInPages) {
  std::vector<std::string> files;
  for (int i = 0; i < 100; ++i) files.push_back(FontFile("Font-" + std::to_string(i)));
  WireClient client;
  client.AddFiles(files);
  std::vector<std::string> told;
  for (const auto& progress : client.Progress()) {
    for (const auto& file : progress.results()) told.push_back(file.path());
  }
  EXPECT_EQ(told, files);
  wire::ClientMessage request;
  request.mutable_list_fonts()->set_limit(60);
  const auto first = client.Ask(request).list_fonts();
  EXPECT_EQ(first.fonts_size(), 60);
  EXPECT_TRUE(first.more());
  request.mutable_list_fonts()->set_after_id(first.fonts(59).id());
  const auto second = client.Ask(request).list_fonts();
  EXPECT_EQ(second.fonts_size(), 40);
  EXPECT_FALSE(second.more());
}

TEST_F(KilnLibraryTest, QueriesKeepToTheirWorkgroups) {
  WireClient client;
  client.AddFiles({FontFile("Testa-Regular"), FontFile("Testa-Bold")});
  wire::ClientMessage request;
  request.mutable_workgroups();
  ASSERT_EQ(client.Ask(request).workgroups().workgroups_size(), 1);
  EXPECT_EQ(client.Ask(request).workgroups().workgroups(0).name(), "Font Library (LOCALIZE ME)");
  request.mutable_workgroups()->set_include_system(true);
  EXPECT_EQ(client.Ask(request).workgroups().workgroups_size(), 2);
  request.mutable_fonts_by_name()->set_type(wire::NAME_FAMILY);
  request.mutable_fonts_by_name()->set_name("Testa");
  request.mutable_fonts_by_name()->set_limit(1);
  EXPECT_EQ(client.Ask(request).fonts_by_name().font_ids_size(), 1);
  EXPECT_EQ(client.Ask(request).fonts_by_name().total(), 2u);
  request.mutable_fonts_by_name()->add_workgroup_ids(2);
  EXPECT_EQ(client.Ask(request).fonts_by_name().total(), 0u) << "System alone";
  request.mutable_fonts_by_name()->add_workgroup_ids(0);
  EXPECT_EQ(client.Ask(request).fonts_by_name().total(), 2u) << "0 is all";
}

TEST_F(KilnLibraryTest, AFileNameThatIsNoTextIsNamedAsFarAsItCanBe) {
  std::filesystem::create_directory(mFiles.Path("odd"));
  std::ofstream(
      mFiles.Path("odd/b\xFF"
                  "d.ttf"))
      << FontBuilder().TrueType();
  WireClient client;
  EXPECT_EQ(client.AddFiles({mFiles.Path("odd")}).files_failed(), 1u);
  EXPECT_EQ(Failures(client), "b?d.ttf:05001005 ");
}

}  // namespace
}  // namespace kiln
