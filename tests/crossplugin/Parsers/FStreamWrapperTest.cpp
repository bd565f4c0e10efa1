#include <gtest/gtest.h>

#include <random>

#include "Parsers/FStreamWrapper.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr unsigned kRead = std::ios_base::in | std::ios_base::binary;
constexpr unsigned kReadWrite = kRead | std::ios_base::out;

class FStreamWrapperTest : public testing::Test {
 protected:
  void Open(std::string_view bytes, unsigned mode) {
    m_stream.open(m_folder.Write("file", bytes).c_str(), mode);
    ASSERT_TRUE(m_stream.is_open());
  }
  std::string File() const { return m_folder.Read("file"); }

  TemporaryFolder m_folder;
  FStreamWrapper m_stream;
};

TEST_F(FStreamWrapperTest, AShortReadLeavesItUsable) {
  Open("abcdef", kRead);
  char buffer[8] = {};
  unsigned long count = 8;
  EXPECT_EQ(ReadStream(m_stream, &count, buffer), -1);
  EXPECT_EQ(count, 8U);
  EXPECT_EQ(m_stream.gcount(), 6);
  m_stream.seekg(4, std::ios_base::beg);
  count = 2;
  EXPECT_EQ(ReadStream(m_stream, &count, buffer), 0);
  EXPECT_EQ(std::string(buffer, 2), "ef");
  EXPECT_EQ(WriteStream(m_stream, &count, "XY"), -1) << "it is open for reading alone";
}

TEST_F(FStreamWrapperTest, ReadsTheSameAsTheWholeFileWhereverItJumps) {
  std::mt19937 random(7);
  std::string bytes(700'000, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  Open(bytes, kRead);
  EXPECT_EQ(m_stream.GetStreamLength(), 700'000);
  for (int i = 0; i < 2000; ++i) {
    const size_t position = random() % bytes.size();
    const size_t count = std::min(bytes.size() - position, random() % (i % 50 == 0 ? 400'000 : 600) + 1);
    if (i % 3 != 0) m_stream.seekg(static_cast<long long>(position), std::ios_base::beg);
    const auto start = static_cast<size_t>(m_stream.tellg());
    std::string found(std::min(count, bytes.size() - start), '\0');
    m_stream.read(found.data(), static_cast<std::streamsize>(found.size()));
    ASSERT_TRUE(m_stream.good());
    ASSERT_TRUE(found == bytes.substr(start, found.size())) << "at " << start;
  }
}

TEST_F(FStreamWrapperTest, GrowsByZerosAndKeepsItsPositions) {
  Open("abc", kReadWrite);
  m_stream.seekp(1, std::ios_base::beg);
  m_stream.seekg(2, std::ios_base::beg);
  EXPECT_TRUE(m_stream.LengthenFileStream(3));
  EXPECT_TRUE(m_stream.LengthenFileStream(2));
  EXPECT_EQ(File(), "abc");
  EXPECT_TRUE(m_stream.LengthenFileStream(100'000));
  EXPECT_EQ(File(), "abc" + std::string(99'997, '\0'));
  EXPECT_EQ(m_stream.tellp(), 1);
  EXPECT_EQ(m_stream.peek(), 'c');
  unsigned long count = 2;
  EXPECT_EQ(WriteStream(m_stream, &count, "XY"), 0);
  EXPECT_EQ(File().substr(0, 4), std::string("aXY\0", 4));
  EXPECT_EQ(m_stream.tellg(), 2);
  EXPECT_EQ(m_stream.get(), 'Y');
}

TEST_F(FStreamWrapperTest, NeverCreatesOrCutsAFile) {
  m_stream.open(m_folder.Path("none").c_str(), kReadWrite | std::ios_base::trunc);
  EXPECT_TRUE(m_stream.fail());
  EXPECT_FALSE(m_folder.Exists("none"));
  Open("abc", kReadWrite | std::ios_base::trunc);
  EXPECT_TRUE(m_stream.good());
  EXPECT_EQ(File(), "abc");
}

}  // namespace
