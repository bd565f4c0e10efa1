// The pool with children that are killed, die, or were never there.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <map>

#include "kiln/fonts/FontReaderPool.h"
#include "kiln/system/BoundedLog.h"
#include "protocol/ErrorCodes.h"
#include "support/FontBuilder.h"
#include "support/TemporaryFolder.h"

namespace kiln {
namespace {

class FontReaderPoolTest : public testing::Test {
 protected:
  FontReaderPoolTest() { signal(SIGPIPE, SIG_IGN); }

  static constexpr const char* kReader = HORNBEAM_STAGE "/lib/hornbeam/Kiln/KilnFontReader";

  // Reads files with a program; the error of each by its path, each answered once.
  std::map<std::string, uint32_t> ReadAll(const std::string& program, const std::vector<std::string>& paths) {
    boost::asio::io_context context;
    std::map<std::string, uint32_t> errors;
    size_t answers = 0;
    FontReaderPool pool(context, program, mLog);
    for (const std::string& path : paths) {
      wire::ReaderJob job;
      job.set_path(path);
      pool.Submit(job, [&, path](const wire::ReadFile& file) {
        errors[path] = file.error();
        if (++answers == paths.size()) context.stop();
      });
    }
    EXPECT_EQ(answers, 0u) << "never from within the call";
    context.run();
    return errors;
  }
  std::string Script(const std::string& text) {
    const std::string path = mFolder.Write("reader.sh", "#!/bin/sh\n" + text);
    chmod(path.c_str(), 0700);
    return path;
  }
  std::vector<std::string> SoundFonts(int count) {
    std::vector<std::string> paths;
    for (int i = 0; i < count; ++i) {
      paths.push_back(mFolder.Write("f" + std::to_string(i) + ".ttf", FontBuilder().TrueType()));
    }
    return paths;
  }

  TemporaryFolder mFolder;
  BoundedLog mLog{mFolder.Path("log")};
};

TEST_F(FontReaderPoolTest, AFileThatEndsItsChildIsNamedAndTheOthersAreRead) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "Sanitizers need more memory than the limit of this test";
#endif
  // Under this limit of memory the big file is the end of whoever reads it.
  const std::string reader = Script("ulimit -v 120000\nexec " + std::string(kReader) + "\n");
  std::vector<std::string> paths = SoundFonts(40);
  const std::string big = mFolder.Write("big.ttf", FontBuilder().TrueType());
  ASSERT_EQ(truncate(big.c_str(), 200 << 20), 0);
  paths.insert(paths.begin() + 20, big);
  for (const auto& [path, error] : ReadAll(reader, paths)) {
    EXPECT_EQ(error, path == big ? codes::kFontToolCrashed : codes::kSuccess) << path;
  }
  EXPECT_NE(mFolder.Read("log").find("big.ttf"), std::string::npos);
}

TEST_F(FontReaderPoolTest, EachFileIsAnsweredWhateverTheChildrenDo) {
  const struct {
    const char* name;
    std::string program;
    uint32_t error;
  } cases[] = {
      {"dies at once", "/bin/false", codes::kFontToolCrashed},
      {"answers garbage", Script("echo this is no frame at all; cat >/dev/null\n"), codes::kFontToolCrashed},
      {"is not there", mFolder.Path("nothing"), codes::kFontToolFailedToLaunch},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    const auto errors = ReadAll(one.program, SoundFonts(5));
    EXPECT_EQ(errors.size(), 5u);
    for (const auto& [path, error] : errors) EXPECT_EQ(error, one.error);
  }
}

}  // namespace
}  // namespace kiln
