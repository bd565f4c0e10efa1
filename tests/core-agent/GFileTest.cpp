#include <gtest/gtest.h>

#include "GFile.h"
#include "GFileSystem.h"
#include "support/TemporaryFolder.h"

namespace {

class GFileTest : public testing::Test {
 protected:
  GFileSystemSpec Spec(const std::string& name) const { return GFileSystemSpec(folder.Path(name)); }

  TemporaryFolder folder;
};

// Holds so little at once that matches lie across its buffers.
class NarrowFile : public GFile {
 public:
  explicit NarrowFile(TUInt64 bufferSize) { mSearchBufferSize = bufferSize; }
};

std::vector<char> Bytes(const std::string& text) {
  return {text.begin(), text.end()};
}

TUInt64 PositionOf(GFile& file) {
  TUInt64 position = 0;
  EXPECT_EQ(file.GetFilePosition(position), 0u);
  return position;
}

}  // namespace

TEST_F(GFileTest, MakesTheModeOfTheBits) {
  const struct {
    unsigned int bits;
    const char* mode;
  } kCases[] = {
      {GFile::eRead, "rb"},
      {GFile::eRead | GFile::eTruncate, "rb"},
      {GFile::eRead | GFile::eBinary, "rb"},
      {0, ""},
      {GFile::eTruncate | GFile::eAppend, ""},
      {GFile::eWrite | GFile::eTruncate, "wb"},
      {GFile::eWrite, "ab"},
      {GFile::eRead | GFile::eWrite | GFile::eTruncate | GFile::eAppend, "w+b"},
      {GFile::eRead | GFile::eWrite | GFile::eAppend, "a+b"},
      {GFile::eRead | GFile::eWrite, "r+b"},
  };
  for (const auto& [bits, mode] : kCases) EXPECT_EQ(GFile::GetModeString(bits), mode) << bits;
}

TEST_F(GFileTest, TellsWhyItCannotOpen) {
  GFile file;
  EXPECT_EQ(file.Open(Spec("none"), GFile::eRead), GFileSystem::kFileNotFound);
  EXPECT_EQ(file.Open(GFileSystemSpec(), GFile::eRead), GFileSystem::kFileNotFound);
  EXPECT_EQ(file.Open(Spec("none/none"), GFile::eWrite), GFile::kOpenFailed);
  EXPECT_EQ(file.Open(Spec(""), GFile::eRead), GFile::kOpenFailed);
  EXPECT_EQ(file.Open(Spec("x"), 0), GFile::kOpenFailed);
  EXPECT_FALSE(file.IsOpen());
  TUInt64 size = 7;
  EXPECT_EQ(file.GetFileSize(size), GFile::kFileNotOpen);
  EXPECT_EQ(file.Close(), GFile::kFileNotOpen);
  EXPECT_EQ(size, 7u);
}

TEST_F(GFileTest, ReadsWhatRemains) {
  folder.Write("f", "abcdef");
  GFile file;
  ASSERT_EQ(file.Open(Spec("f"), GFile::eRead), 0u);
  std::vector<char> bytes;
  EXPECT_EQ(file.Read(4, bytes), 0u);
  EXPECT_EQ(bytes, Bytes("abcd"));
  EXPECT_EQ(file.Read(~TUInt64{0}, bytes), 0u);
  EXPECT_EQ(bytes, Bytes("ef"));
  EXPECT_EQ(file.Read(4, bytes), 0u);
  EXPECT_TRUE(bytes.empty());
  EXPECT_EQ(file.SetFilePosition(GFile::eEnd, -2), 0u);
  std::string text;
  EXPECT_EQ(file.Read(text), 0u);
  EXPECT_EQ(text, "ef");
  EXPECT_EQ(file.SetFilePosition(GFile::eEnd, -1), 0u);
  TUInt32 number = 9;
  EXPECT_EQ(file.Read(number), CoreErrorCodes::kError);
  EXPECT_EQ(number, 9u);
  EXPECT_EQ(file.SetFilePosition(GFile::EPosition{3}, 0), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(file.SetFilePosition(GFile::eBeginning, -1), CoreErrorCodes::kError);
}

TEST_F(GFileTest, WritesNumbersAndSizesTheFile) {
  GFile file;
  ASSERT_EQ(file.Open(Spec("f"), GFile::eRead | GFile::eWrite | GFile::eTruncate), 0u);
  EXPECT_EQ(file.Write(TUInt32{0x11223344}), 0u);
  EXPECT_EQ(file.Write(TUInt16{0x5566}), 0u);
  EXPECT_EQ(file.Write(nullptr, 3), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(file.SetFileSize(5), 0u);
  TUInt64 size = 0;
  EXPECT_EQ(file.GetFileSize(size), 0u);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(file.SetFilePosition(GFile::eBeginning, 0), 0u);
  TUInt32 number = 0;
  EXPECT_EQ(file.Read(number), 0u);
  EXPECT_EQ(number, 0x11223344u);
  EXPECT_EQ(file.Close(), 0u);
  EXPECT_EQ(file.SetFileSize(2), 0u);
  EXPECT_EQ(folder.Read("f").size(), 2u);
}

TEST_F(GFileTest, NeverEmptiesAFileForItsResourceFork) {
  folder.Write("f", "kept");
  GFile file;
  EXPECT_EQ(file.OpenResourceFork(Spec("f"), GFile::eRead | GFile::eWrite), GFileSystem::kFileNotFound);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(folder.Read("f"), "kept");
}

TEST_F(GFileTest, ReportsAFullDisk) {
  GFile file;
  if (file.Open(GFileSystemSpec("/dev/full"), GFile::eWrite) != 0) GTEST_SKIP();
  EXPECT_EQ(file.Write(std::string(1 << 20, 'x')), GFileSystem::kDirectoryFull);
}

TEST_F(GFileTest, FindsAcrossBuffersOrLeavesThePosition) {
  const std::string text = "aaab.aab.needleneedle.aaabc";
  folder.Write("f", text);
  for (const char* search : {"a", "aaab", "needle", "dlene", "aaabc", "c", "aabc"}) {
    for (const TUInt64 bufferSize : {1u, 2u, 3u, 5u, 7u, 100u}) {
      for (const long offset : {0L, 1L, 9L, 15L}) {
        NarrowFile file(bufferSize);
        ASSERT_EQ(file.Open(Spec("f"), GFile::eRead), 0u);
        ASSERT_EQ(file.SetFilePosition(GFile::eBeginning, 2), 0u);
        const std::size_t expected = text.find(search, static_cast<std::size_t>(offset));
        const TErrCode status = file.Find(Bytes(search), GFile::eBeginning, offset);
        const bool isFound = expected != text.npos;
        EXPECT_EQ(status, isFound ? 0u : CoreErrorCodes::kNotFound) << search << bufferSize << offset;
        EXPECT_EQ(PositionOf(file), isFound ? expected : 2u) << search << bufferSize << offset;
      }
    }
  }
}
