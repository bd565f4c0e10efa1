#include <gtest/gtest.h>

#include <filesystem>

#include "Memory/CFVector.h"
#include "support/TemporaryFolder.h"

namespace {

std::string Info(const std::string& identifier, const std::string& executable) {
  return "<plist><dict><key>CFBundleIdentifier</key><string>" + identifier +
         "</string><key>CFBundleExecutable</key><string>" + executable + "</string></dict></plist>";
}

RetainPtr<CFBundleRef> Create(const std::string& path) {
  return adoptCF(CFBundleCreate(nullptr, ToCFURL(path, true).get()));
}

TEST(CFBundle, OneFolderIsOneObject) {
  const TemporaryFolder folder;
  folder.Write("A.framework/Info.plist", Info("com.example.a", "A"));
  folder.Write("A.framework/A", "not a shared object");
  std::filesystem::create_symlink(folder.Path("A.framework"), folder.Path("link"));
  auto bundle = Create(folder.Path("A.framework"));
  EXPECT_EQ(Create(folder.Path("link")), bundle);
  EXPECT_EQ(Create(folder.Path("./A.framework/")), bundle);
  EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.a")), bundle.get());
  CFErrorRef error = nullptr;
  EXPECT_FALSE(CFBundleLoadExecutableAndReturnError(bundle.get(), &error));
  EXPECT_NE(ToStdString(adoptCF(CFErrorCopyDescription(error)).get()).find("/A.framework/A"),
            std::string::npos);
  EXPECT_EQ(CFErrorGetCode(adoptCF(error).get()), kCFBundleExecutableLoadError);
  EXPECT_EQ(Create(folder.Path("absent")), nullptr);
  EXPECT_EQ(Create(folder.Path("A.framework/A")), nullptr);
  bundle = nullptr;
  EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.a")), nullptr);
}

TEST(CFBundle, ADamagedBundleIsABundleWithoutInformation) {
  const TemporaryFolder folder;
  folder.Write("Broken.bundle/Contents/Info.plist", "<plist><dict><key>");
  folder.Write("Escaping.bundle/Contents/Info.plist", Info("com.example.escaping", "../../secret"));
  folder.Write("secret", "");
  folder.Write("List.bundle/Info.plist", "<array/>");
  folder.Write("file.bundle", "");
  const auto bundles = adoptCF(
      CFBundleCreateBundlesFromDirectory(nullptr, ToCFURL(folder.Path(), true).get(), CFSTR("bundle")));
  ASSERT_EQ(CFArrayGetCount(bundles.get()), 3);
  for (const auto& bundle : ToVector<CFBundleRef>(bundles.get())) {
    EXPECT_EQ(CFBundleCopyExecutableURL(bundle.get()), nullptr);
    EXPECT_FALSE(CFBundleLoadExecutable(bundle.get()));
    EXPECT_NE(CFBundleGetInfoDictionary(bundle.get()), nullptr);
  }
  EXPECT_EQ(CFBundleGetIdentifier(ToVector<CFBundleRef>(bundles.get())[0].get()), nullptr);
}

TEST(CFBundle, FindsResourcesAndTexts) {
  const TemporaryFolder folder;
  folder.Write("A.app/Contents/Info.plist", Info("com.example.app", "A"));
  folder.Write("A.app/Contents/Resources/page.html", "");
  folder.Write("A.app/Contents/Resources/en.lproj/help/index.txt", "");
  folder.Write("A.app/Contents/Resources/en.lproj/Localizable.strings",
               "\"kHello\" = \"Hello \\\"you\\\"\";\nbroken = ;\n\"kBye\" = \"Bye\";\n");
  const auto bundle = Create(folder.Path("A.app"));
  const auto resource = [&bundle](CFStringRef name, CFStringRef type, CFStringRef below) {
    const std::string path = ToPath(adoptCF(CFBundleCopyResourceURL(bundle.get(), name, type, below)).get());
    return path.empty() ? "" : path.substr(path.find("/Resources/") + 11);
  };
  EXPECT_EQ(resource(CFSTR("page"), CFSTR("html"), nullptr), "page.html");
  EXPECT_EQ(resource(CFSTR("index.txt"), nullptr, CFSTR("help")), "en.lproj/help/index.txt");
  EXPECT_EQ(resource(CFSTR("absent"), CFSTR("html"), nullptr), "");
  const auto text = [&bundle](CFStringRef key, CFStringRef value) {
    return ToStdString(adoptCF(CFBundleCopyLocalizedString(bundle.get(), key, value, nullptr)).get());
  };
  EXPECT_EQ(text(CFSTR("kHello"), nullptr), "Hello \"you\"");
  EXPECT_EQ(text(CFSTR("kBye"), CFSTR("else")), "Bye");
  EXPECT_EQ(text(CFSTR("kAbsent"), CFSTR("else")), "else");
  EXPECT_EQ(text(CFSTR("kAbsent"), CFSTR("")), "kAbsent");
}

}  // namespace
