#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "support/TemporaryFolder.h"

namespace {

struct Line {
  int indentChange;
  std::string text;
  bool operator==(const Line&) const = default;
};

class TraceTest : public testing::Test {
 protected:
  TraceTest() { DebugUtils::SetTraceSink(&TraceTest::Collect, this); }
  ~TraceTest() override {
    StopLogging();
    DebugUtils::SetTraceFile("");
    DebugUtils::SetTraceSink(nullptr, nullptr);
  }

  std::vector<Line> lines;

 private:
  static void Collect(int indentChange, const char* text, void* context) {
    static_cast<TraceTest*>(context)->lines.push_back({indentChange, text});
  }
};

int Traced(int input) {
  OperationTrace trace("Traced", "Entering %s(%d)", "Traced", input);
  if (input < 0) throw std::invalid_argument("negative");
  if (input == 0) return 0;
  trace.Exiting("%s() returning %d", "Traced", input);
  trace.Exiting("never written");
  return input;
}

}  // namespace

TEST_F(TraceTest, CutsALongTextAndTellsItsLength) {
  const std::string text(100'000, 'x');
  EXPECT_EQ(OutputIndentedAndFormattedString(0, "%s", text.c_str()), 100'000);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].text, text.substr(0, 65'535));
}

TEST_F(TraceTest, PairsEntryAndExitOnEveryPath) {
  Traced(3);
  Traced(0);
  EXPECT_THROW(Traced(-1), std::invalid_argument);
  const std::vector<Line> expected{{1, "Entering Traced(3)"},  {-1, "Traced() returning 3"},
                                   {1, "Entering Traced(0)"},  {-1, "Exiting Traced()"},
                                   {1, "Entering Traced(-1)"}, {-1, "Exiting Traced()"}};
  EXPECT_EQ(lines, expected);
}

TEST_F(TraceTest, WritesToTheFileOnlyWhileLoggingIsStarted) {
  const TemporaryFolder folder;
  DebugUtils::SetTraceFile(folder.Path("trace.log"));
  OutputIndentedAndFormattedString(0, "before");
  StartLogging();
  OutputIndentedAndFormattedString(1, "Entering a");
  OutputIndentedAndFormattedString(1, "Entering b");
  OutputIndentedAndFormattedString(0, "...between");
  std::thread([] { OutputIndentedAndFormattedString(0, "on a thread of its own"); }).join();
  OutputIndentedAndFormattedString(-1, "Exiting b");
  OutputIndentedAndFormattedString(-1, "Exiting a");
  StopLogging();
  OutputIndentedAndFormattedString(0, "after");
  const char* const written =
      "Entering a\n  Entering b\n    ...between\non a thread of its own\n  Exiting b\nExiting a\n";
  EXPECT_EQ(folder.Read("trace.log"), written);
  DebugUtils::SetTraceFile(folder.Path("second.log"));
  StartLogging();
  OutputIndentedAndFormattedString(-1, "an exit too many");
  OutputIndentedAndFormattedString(0, "stays at the edge");
  StopLogging();
  EXPECT_EQ(folder.Read("trace.log"), written);
  DebugUtils::SetTraceFile("");
  StartLogging();
  OutputIndentedAndFormattedString(0, "to nobody");
  EXPECT_EQ(folder.Read("second.log"), "an exit too many\nstays at the edge\n");
}
