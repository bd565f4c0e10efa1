#include <gtest/gtest.h>

#include <filesystem>

#include "Memory/CFVector.h"
#include "Utilities/SaveFolderDialog.h"
#include "support/FakeSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/ScopedReplacement.h"

namespace {

class SaveFolderDialogTest : public testing::Test {
 protected:
  int Ask(const std::string& documentName) {
    return ShowSaveFolderDialog(documentName, path, CFSTR("Title"), nullptr, CFSTR("%@'s fonts"));
  }

  FakeTerminal terminal;
  ScopedReplacement<platform::Terminal> replaced{terminal};
  ScopedEnvironment prompt{"LOOM_TERMINAL_PROMPT", std::nullopt};
  ScopedEnvironment home{"HOME", "/nowhere/ada"};
  std::string path = "untouched";
};

TEST_F(SaveFolderDialogTest, AnswersBecomeAbsolutePaths) {
  const std::string here = std::filesystem::current_path().string();
  const struct {
    const char *document, *answer;
    std::string path;
  } kCases[] = {
      {"Flyer", "", here + "/Flyer's fonts"},
      {"Flyer", "  \t", here + "/Flyer's fonts"},
      {"a/../b\x1B[2J", "", here + "/a_.._b[2J's fonts"},
      {"50%@", "", here + "/50%@'s fonts"},
      {"Flyer", "out", here + "/out"},
      {"Flyer", "out/../in", here + "/in"},
      {"Flyer", " /nowhere/Caf\xC3\xA9 ", "/nowhere/Caf\xC3\xA9"},
      {"Flyer", "~/out", "/nowhere/ada/out"},
  };
  for (const auto& row : kCases) {
    terminal.answers = {row.answer};
    EXPECT_EQ(Ask(row.document), 0);
    EXPECT_EQ(path, row.path);
  }
  EXPECT_EQ(terminal.written.find('\x1B'), std::string::npos) << "a name must not steer the terminal";
}

TEST_F(SaveFolderDialogTest, NobodyIsAskedWhereThatIsForbidden) {
  terminal.answers = {"/out", "/out"};
  {
    const ScopedEnvironment forbidden("LOOM_TERMINAL_PROMPT", "0");
    EXPECT_EQ(Ask("Flyer"), -1);
  }
  terminal.canAsk = false;
  EXPECT_EQ(Ask("Flyer"), -1);
  EXPECT_EQ(terminal.written, "");
}

}  // namespace
