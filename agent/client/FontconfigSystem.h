#pragma once

#include <fontconfig/fontconfig.h>

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "client/FontSystem.h"

/// Adds and removes fonts of this process alone, through fontconfig's application fonts.
///
/// What fontconfig leaves to do:
/// - No call removes one application font: the whole set is cleared and the rest added again. The patterns of
/// the
///   rest are kept, so that no file is read a second time.
/// - Reloading the configuration drops the application fonts: they are added to the new one before it is
/// current.
/// - Its own rescan looks every 30 seconds at times in whole seconds, so it is late and may miss a change for
///   good; and it would drop the application fonts. While there are any, it is switched off for the current
///   configuration and IsStale() and Reload() take its place.
///
/// Why the host may use fontconfig meanwhile: AddFiles() and RemoveFiles() change the current configuration
/// in place, on the caller's thread, which is the one on which the host uses fontconfig and so isn't inside
/// it. Reload() runs on another thread and changes no configuration that anyone can see: it builds a new one
/// aside and makes it current, which fontconfig (2.14) does atomically. The one replaced stays alive until
/// the next Reload(), so that a host which walks its font set without holding a reference isn't cut off.
///
/// Thread: any, by one mutex, which is not held while folders are read.
class FontconfigSystem final : public FontSystem {
 public:
  FontconfigSystem() = default;
  /// Leaves the fonts in the process.
  ~FontconfigSystem() override = default;
  FontconfigSystem(const FontconfigSystem&) = delete;
  FontconfigSystem& operator=(const FontconfigSystem&) = delete;

  std::vector<bool> AddFiles(const std::vector<std::string>& files) override;
  void RemoveFiles(const std::vector<std::string>& files) override;
  void ForgetFiles(const std::vector<std::string>& files) override;
  void Reload() override;
  std::size_t CountInFolders(const std::set<std::string>& files) override;
  bool IsStale() override;
  std::chrono::seconds CheckInterval() override;

 private:
  struct ReleaseConfig {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
  };
  struct ReleasePattern {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  };
  using Config = std::unique_ptr<FcConfig, ReleaseConfig>;
  using Patterns = std::vector<std::unique_ptr<FcPattern, ReleasePattern>>;

  static Config Current() { return Config(FcConfigReference(nullptr)); }
  static Patterns ScanInto(FcConfig* config, const std::string& file);
  void AddKept(FcConfig* config);
  void Adopt(Config config);

  std::mutex mMutex;
  std::map<std::string, Patterns> mFiles;  // what AddFiles() added, with what fontconfig made of it
  Config mAdopted;                         // the configuration that holds mFiles; null while there are none
  Config mReplaced;
  int mRescanInterval = 0;  // what the adopted configuration had, in seconds
};
