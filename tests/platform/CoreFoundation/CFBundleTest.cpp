#include <gtest/gtest.h>

#include <filesystem>

#include "Memory/CFVector.h"
#include "support/TemporaryFolder.h"

namespace {

std::string Info(const std::string& identifier, const std::string& executable) {
  return "<plist><dict><key>CFBundleIdentifier</key><string>" + identifier +
         "</string><key>CFBundleExecutable</key><string>" + executable +
         "</string><key>HostAppMinimumVersion</key><string>15.0</string></dict></plist>";
}

RetainPtr<CFBundleRef> Create(const std::string& path) {
  return adoptCF(CFBundleCreate(nullptr, ToCFURL(path, true).get()));
}

/// Compiles a tiny shared object that finds its own bundle, as a plug-in does.
bool Compile(const TemporaryFolder& folder, const std::string& output) {
  const std::string source = folder.Write("plugin.cpp", R"(
extern "C" {
const char* CFStringGetCStringPtr(const void*, unsigned);
const void* __CFStringMakeConstantString(const char*);
const void* CFBundleGetBundleWithIdentifier(const void*);
int pluginAnswer = 41;
int PluginAnswer() { return pluginAnswer + 1; }
const void* PluginBundle() { return CFBundleGetBundleWithIdentifier(__CFStringMakeConstantString("com.example.plugin")); }
}
)");
  return std::system(("c++ -shared -fPIC -o '" + output + "' '" + source + "'").c_str()) == 0;
}

TEST(CFBundle, APlugInIsLoadedAndFindsItself) {
  const TemporaryFolder folder;
  folder.Write("A.plugin/Contents/Info.plist", Info("com.example.plugin", "A"));
  folder.MakeFolder("A.plugin/Contents/Linux");
  ASSERT_TRUE(Compile(folder, folder.Path("A.plugin/Contents/Linux/A")));
  EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.plugin")), nullptr);
  {
    const auto bundle = Create(folder.Path("A.plugin"));
    ASSERT_TRUE(bundle);
    EXPECT_EQ(ToPath(adoptCF(CFBundleCopyExecutableURL(bundle.get())).get()),
              std::filesystem::canonical(folder.Path("A.plugin/Contents/Linux/A")).string());
    EXPECT_FALSE(CFBundleIsExecutableLoaded(bundle.get()));
    auto* answer =
        reinterpret_cast<int (*)()>(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PluginAnswer")));
    auto* itself = reinterpret_cast<const void* (*)()>(
        CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PluginBundle")));
    ASSERT_TRUE(answer != nullptr && itself != nullptr);
    EXPECT_TRUE(CFBundleIsExecutableLoaded(bundle.get()));
    *static_cast<int*>(CFBundleGetDataPointerForName(bundle.get(), CFSTR("pluginAnswer"))) = 5;
    EXPECT_EQ(answer(), 6);
    EXPECT_EQ(itself(), bundle.get());
    EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("Absent")), nullptr);
    EXPECT_EQ(ToStdString(CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("HostAppMinimumVersion"))),
              "15.0");
  }
  EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.plugin")), nullptr);
}

TEST(CFBundle, OneFolderIsOneObject) {
  const TemporaryFolder folder;
  folder.Write("A.framework/Info.plist", Info("com.example.a", "A"));
  folder.Write("A.framework/A", "not a shared object");
  std::filesystem::create_symlink(folder.Path("A.framework"), folder.Path("link"));
  const auto bundle = Create(folder.Path("A.framework"));
  EXPECT_EQ(Create(folder.Path("link")), bundle);
  EXPECT_EQ(Create(folder.Path("./A.framework/")), bundle);
  EXPECT_TRUE(CFArrayContainsValue(CFBundleGetAllBundles(), {0, CFArrayGetCount(CFBundleGetAllBundles())},
                                   bundle.get()));
  EXPECT_EQ(ToPath(adoptCF(CFBundleCopyExecutableURL(bundle.get())).get()).ends_with("/A.framework/A"), true);
  CFErrorRef error = nullptr;
  EXPECT_FALSE(CFBundleLoadExecutableAndReturnError(bundle.get(), &error));
  EXPECT_NE(ToStdString(adoptCF(CFErrorCopyDescription(error)).get()).find("/A.framework/A"),
            std::string::npos);
  EXPECT_EQ(CFErrorGetCode(adoptCF(error).get()), kCFBundleExecutableLoadError);
  EXPECT_EQ(Create(folder.Path("absent")), nullptr);
  EXPECT_EQ(Create(folder.Path("A.framework/A")), nullptr);
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
  EXPECT_TRUE(ToPath(adoptCF(CFBundleCopyPrivateFrameworksURL(bundle.get())).get())
                  .ends_with("/Contents/Frameworks"));
}

}  // namespace
