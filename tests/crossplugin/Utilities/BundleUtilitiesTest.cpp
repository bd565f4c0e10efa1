#include <gtest/gtest.h>

#include "Utilities/BundleUtilities.h"
#include "Utilities/DebugUtils.h"
#include "support/TemporaryFolder.h"

namespace {

std::string InfoWithIdentifier(const std::string& identifier) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
         "<key>CFBundleIdentifier</key><string>" +
         identifier + "</string></dict></plist>";
}

class BundleUtilitiesTest : public testing::Test {
 protected:
  BundleUtilitiesTest() {
    folder.Write("Plug.plugin/Contents/Info.plist", InfoWithIdentifier("com.talworth.test.Plug"));
    folder.Write("Plug.plugin/Contents/Frameworks/Inner.framework/Info.plist",
                 InfoWithIdentifier("com.talworth.test.Inner"));
    DebugUtils::SetTraceSink(
        [](int, const char* text, void* context) { *static_cast<std::string*>(context) += text; }, &trace);
  }
  ~BundleUtilitiesTest() override { DebugUtils::SetTraceSink(nullptr, nullptr); }

  TemporaryFolder folder;
  std::string trace;
};

}  // namespace

TEST_F(BundleUtilitiesTest, OpensAFrameworkInsideALoadedBundle) {
  const CFStringRef identifier = CFSTR("com.talworth.test.Plug");
  EXPECT_FALSE(LoadPrivateFramework(identifier, "Inner.framework"));
  EXPECT_EQ(trace, "CFBundleGetBundleWithIdentifier failed on 'com.talworth.test.Plug'.");
  const RetainPtr<CFBundleRef> plugin = OpenBundleAtPath(folder.Path("Plug.plugin"));
  ASSERT_TRUE(plugin);
  EXPECT_EQ(GetBundleWithIdentifierReliably(identifier), plugin.get());
  EXPECT_TRUE(LoadPrivateFramework(identifier, "Inner.framework"));
  trace.clear();
  EXPECT_FALSE(LoadPrivateFramework(identifier, "Other.framework"));
  EXPECT_EQ(trace, "CFBundleCreate failed on '" + folder.Path("Plug.plugin") +
                       "/Contents/Frameworks/Other.framework'.");
}
