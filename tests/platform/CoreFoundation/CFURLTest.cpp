#include <gtest/gtest.h>

#include <filesystem>

#include "Memory/CFVector.h"

namespace {

std::string Text(CFURLRef url) {
  return ToStdString(CFURLGetString(url));
}

TEST(CFURL, KeepsPathsAsBytes) {
  struct Case {
    const char* path;
    bool isFolder;
    const char* text;
    const char* last;
    const char* extension;
  };
  const Case cases[] = {{"/", true, "file:///", "/", ""},
                        {"/a b/é.txt", false, "file:///a%20b/%C3%A9.txt", "é.txt", "txt"},
                        {"/a/b.app///", false, "file:///a/b.app/", "b.app", "app"},
                        {"/a/b", true, "file:///a/b/", "b", ""},
                        {"/x?y#z%", false, "file:///x%3Fy%23z%25", "x?y#z%", ""},
                        {"/a/.hidden", false, "file:///a/.hidden", ".hidden", ""}};
  for (const Case& test : cases) {
    const auto url = ToCFURL(test.path, test.isFolder);
    EXPECT_EQ(Text(url.get()), test.text);
    EXPECT_EQ(ToStdString(adoptCF(CFURLCopyLastPathComponent(url.get())).get()), test.last);
    EXPECT_EQ(ToStdString(adoptCF(CFURLCopyPathExtension(url.get())).get()), test.extension);
    EXPECT_TRUE(CFEqual(adoptCF(CFURLCreateWithString(nullptr, CFURLGetString(url.get()), nullptr)).get(),
                        url.get()));
  }
  const auto raw = ToCFURL("/\xFF", false);
  EXPECT_EQ(Text(raw.get()), "file:///%FF");
  EXPECT_EQ(CFURLCopyFileSystemPath(raw.get(), kCFURLPOSIXPathStyle), nullptr);
  EXPECT_EQ(ToPath(raw.get()), "/\xFF");
}

TEST(CFURL, RefusesWhatIsNoFile) {
  for (const char* text : {"", "http://a/b", "file:", "file://host/a", "file:///a%2", "file:///a%zz",
                           "file:///a%00b", "file:///a?b", "/a"}) {
    EXPECT_EQ(CFURLCreateWithString(nullptr, ToCFString(text).get(), nullptr), nullptr) << text;
  }
  EXPECT_EQ(ToCFURL("", false), nullptr);
  EXPECT_EQ(ToCFURL(std::string_view("a\0b", 3), false), nullptr);
  EXPECT_EQ(CFURLCreateWithFileSystemPath(nullptr, CFSTR("a"), kCFURLWindowsPathStyle, false), nullptr);
}

TEST(CFURL, RelativePathsAreResolvedOnDemand) {
  const auto url = ToCFURL("a/b", false);
  UInt8 buffer[4];
  EXPECT_TRUE(CFURLGetFileSystemRepresentation(url.get(), false, buffer, 4));
  EXPECT_STREQ(reinterpret_cast<char*>(buffer), "a/b");
  EXPECT_FALSE(CFURLGetFileSystemRepresentation(url.get(), true, buffer, 4));
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(ToPath(url.get()), (std::filesystem::current_path() / "a/b").string());
  const auto folder = adoptCF(CFURLCreateCopyDeletingLastPathComponent(nullptr, url.get()));
  const auto joined =
      adoptCF(CFURLCreateCopyAppendingPathComponent(nullptr, folder.get(), CFSTR("b"), false));
  EXPECT_TRUE(CFEqual(joined.get(), url.get()));
  EXPECT_TRUE(CFURLHasDirectoryPath(folder.get()));
}

}  // namespace
