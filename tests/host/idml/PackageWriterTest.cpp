#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "idml/Limits.h"
#include "idml/PackageReader.h"
#include "idml/PackageWriter.h"
#include "idml/ZipArchive.h"
#include "support/IdmlFixture.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

class PackageWriterTest : public testing::Test {
 protected:
  PackageWriterTest() {
    IdmlFixture fixture("=== Resources/Styles.xml\n<RootParagraphStyleGroup/>\n");
    m_sPath = fixture.Set("Other/kept.bin", std::string("\0\1\2", 3)).Write(m_folder.Path("a.idml"));
  }

  std::string Stored(const std::string& name) {
    std::string error;
    const auto document = idml::ReadPackage(m_sPath, error);
    EXPECT_TRUE(document) << error;
    const auto found = document->stored.find(name);
    return found == document->stored.end() ? "(nothing)" : found->second;
  }

  long FilesInFolder() const {
    return std::distance(fs::directory_iterator(m_folder.Path()), fs::directory_iterator());
  }

  TemporaryFolder m_folder;
  std::string m_sPath;
  std::string m_sError;
};

TEST_F(PackageWriterTest, StoresBesideTheDocumentsPartsAndReplaces) {
  ASSERT_EQ(chmod(m_sPath.c_str(), 0640), 0);
  ASSERT_TRUE(idml::StoreInPackage(m_sPath, {{"slug", "one"}, {"other", std::string("\0x", 2)}}, m_sError))
      << m_sError;
  ASSERT_TRUE(idml::StoreInPackage(m_sPath, {{"slug", "two"}}, m_sError)) << m_sError;
  EXPECT_EQ(Stored("slug"), "two");
  EXPECT_EQ(Stored("other"), std::string("\0x", 2));
  EXPECT_EQ(FilesInFolder(), 1);
  struct stat info = {};
  ASSERT_EQ(stat(m_sPath.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0640u);
  const auto archive = idml::ZipArchive::Open(m_sPath, m_sError);
  ASSERT_TRUE(archive) << m_sError;
  EXPECT_EQ(archive->Read("Other/kept.bin", m_sError), std::string("\0\1\2", 3));
  EXPECT_EQ(archive->NamesWithPrefix("").front(), "mimetype");
}

TEST_F(PackageWriterTest, FollowsASymbolicLinkAndLeavesItOne) {
  const std::string link = m_folder.Path("link.idml");
  fs::create_symlink(m_sPath, link);
  ASSERT_TRUE(idml::StoreInPackage(link, {{"slug", "one"}}, m_sError)) << m_sError;
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Stored("slug"), "one");
}

TEST_F(PackageWriterTest, LeavesTheFileAloneOnFailure) {
  const std::string text = m_folder.Write("text.idml", "no archive");
  EXPECT_FALSE(idml::StoreInPackage(text, {{"slug", "one"}}, m_sError));
  EXPECT_EQ(m_sError, text + ": not a zip archive");
  EXPECT_EQ(m_folder.Read("text.idml"), "no archive");
  const std::string large(idml::limits::kMaximumStoredSize + 1, 'x');
  for (const auto& [name, bytes] :
       {std::pair<std::string, std::string>("../up", "x"), {"", "x"}, {"slug", large}}) {
    EXPECT_FALSE(idml::StoreInPackage(m_sPath, {{name, bytes}}, m_sError)) << name;
  }
  EXPECT_FALSE(idml::StoreInPackage(m_folder.Path("gone.idml"), {{"slug", "x"}}, m_sError));
  EXPECT_EQ(Stored("slug"), "(nothing)");
  EXPECT_EQ(FilesInFolder(), 2);
}

}  // namespace
