#include <gtest/gtest.h>
#include <unistd.h>

#include <iostream>
#include <map>
#include <string>

#include "Memory/LiveObjects.h"

namespace {

using Counts = std::map<std::string, long>;

/// What has grown from `before` to `after`, as "CFString +2".
std::string Grown(const Counts& before, const Counts& after) {
  std::string text;
  for (const auto& [type, count] : after) {
    const auto found = before.find(type);
    const long more = count - (found == before.end() ? 0 : found->second);
    if (more > 0) text += (text.empty() ? "" : ", ") + type + " +" + std::to_string(more);
  }
  return text;
}

/// Names each test that leaves CoreFoundation objects behind. What a test suite holds for all of its tests,
/// or a shared object for the rest of the program, is not a fault yet: only what is left at the very end
/// fails.
class LiveObjectListener : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override { before_ = LiveObjectCounts(); }
  void OnTestEnd(const testing::TestInfo& test) override {
    const std::string grown = Grown(before_, LiveObjectCounts());
    if (!grown.empty())
      left_ += std::string("  ") + test.test_suite_name() + "." + test.name() + ": " + grown + "\n";
  }

  const std::string& Left() const { return left_; }

 private:
  Counts before_;
  std::string left_;
};

}  // namespace

#ifdef __SANITIZE_ADDRESS__
static const pid_t sCheckedProcess = getpid();

// fontconfig keeps pointers as offsets, which the leak check can't follow: what it holds to the end looks
// lost. Visible, or the sanitizer's library doesn't find it.
extern "C" __attribute__((visibility("default"))) const char*
__lsan_default_suppressions();               // NOLINT(bugprone-reserved-identifier)
const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:libfontconfig\n";
}

// In a child that a test has forked the check would see its parent's threads as gone, and all they hold as
// lost.
extern "C" __attribute__((visibility("default"))) int
__lsan_is_turned_off();       // NOLINT(bugprone-reserved-identifier)
int __lsan_is_turned_off() {  // NOLINT(bugprone-reserved-identifier)
  return getpid() == sCheckedProcess ? 0 : 1;
}
#endif

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  auto* listener = new LiveObjectListener;
  // Owned by the list, which lives until the program ends.
  testing::UnitTest::GetInstance()->listeners().Append(listener);
  const int result = RUN_ALL_TESTS();
  const std::string left = Grown({}, LiveObjectCounts());
  if (left.empty()) return result;
  std::cerr << "CoreFoundation objects are left over: " << left << "\nTests that left some:\n"
            << listener->Left();
  return result == 0 ? 1 : result;
}
