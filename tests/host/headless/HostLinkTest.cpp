#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "InterfacePtr.h"
#include "headless/Boss.h"
#include "headless/HostLink.h"
#include "support/TemporaryFolder.h"

namespace {

using Status = Facade::ILinkFacade;

Status::LinkStatus StatusOf(const idml::Link& link) {
  const InterfacePtr<headless::Boss> boss(new headless::Boss());
  return boss->Emplace<headless::HostLink>(link)->Status();
}

TEST(HostLinkTest, UnderstandsTheFormsOfFileAddresses) {
  using headless::PathOfFileURI;
  EXPECT_EQ(PathOfFileURI("file:/a/b.eps"), "/a/b.eps");
  EXPECT_EQ(PathOfFileURI("file:///a/b.eps"), "/a/b.eps");
  EXPECT_EQ(PathOfFileURI("file://localhost/a%20b%C3%A9"), "/a b\xC3\xA9");
  EXPECT_EQ(PathOfFileURI("file:C:/a%2fb"), "C:/a/b");
  for (const char* none :
       {"http://x/a", "file://server/a", "file:/a%0", "file:/a%zz", "file:/a%00b", "", "file://"}) {
    EXPECT_EQ(PathOfFileURI(none), "") << none;
  }
}

TEST(HostLinkTest, ComparesTheDocumentsMemoryWithTheFile) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a.eps", "x");
  struct stat info = {};
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  const std::string here = "file:" + path;
  const std::string gone = "file:" + folder.Path("gone.eps");
  const struct {
    const char* name;
    idml::Link link;
    Status::LinkStatus expected;
  } rows[] = {
      {"as placed", {here, "", false, false, info.st_mtime, {}}, Status::kUpToDate},
      {"as placed, whatever was stored", {here, "", false, true, info.st_mtime, {}}, Status::kUpToDate},
      {"newer", {here, "", false, false, info.st_mtime - 1, {}}, Status::kOutOfDate},
      {"no time, stored out of date", {here, "", false, true, {}, {}}, Status::kOutOfDate},
      {"no time", {here, "", false, false, {}, {}}, Status::kUpToDate},
      {"gone", {gone, "", false, false, {}, {}}, Status::kMissing},
      {"gone but embedded", {gone, "", true, false, {}, {}}, Status::kEmbedded},
      {"another system's path", {"file:C:/a.eps", "", false, false, {}, {}}, Status::kMissing},
      {"no address", {"", "", false, false, {}, {}}, Status::kUpToDate},
      {"no file", {"http://x/a.eps", "", false, false, {}, {}}, Status::kUpToDate},
  };
  for (const auto& row : rows) EXPECT_EQ(StatusOf(row.link), row.expected) << row.name;
}

}  // namespace
