#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "client/FontSystem.h"

/// The agent's fonts that this process was made to see at once, by font ID. A file holds several fonts when
/// it is a collection: it goes with the last of them.
///
/// Thread: any; one mutex, held across the calls to the font system. Activate() and Deactivate() belong on
/// the thread on which the host uses its fonts (see FontconfigSystem).
class ProcessFonts {
 public:
  /// \param system  Owned.
  explicit ProcessFonts(std::unique_ptr<FontSystem> system);

  /// Makes fonts visible to this process before it returns.
  ///
  /// \param fonts  Font IDs with the paths of their files.
  /// \return The IDs of those that can't be seen, in order; the others stay all the same.
  std::vector<unsigned int> Activate(const std::vector<std::pair<unsigned int, std::string>>& fonts);

  /// Takes fonts away again; unknown IDs are passed over. All of them cost one change of the font system.
  void Deactivate(const std::vector<unsigned int>& fontIDs);

  /// Takes all fonts away.
  void DeactivateAll();

  /// Whether Activate() made the font visible.
  bool Holds(unsigned int fontID) const;

  /// Makes what other programs activated or deactivated visible too. For the library's own thread: reads the
  /// font folders.
  void Reload() { mSystem->Reload(); }

  /// Reload(), when the font folders have changed or the host dropped the fonts.
  void ReloadIfStale() {
    if (mSystem->IsStale()) mSystem->Reload();
  }

  /// How often ReloadIfStale() is due; 0 is never.
  std::chrono::seconds CheckInterval() const { return mSystem->CheckInterval(); }

 private:
  const std::unique_ptr<FontSystem> mSystem;
  mutable std::mutex mMutex;
  std::map<unsigned int, std::string> mFileOfFont;
  std::map<std::string, unsigned int> mFontsInFile;  // how many of mFileOfFont lie in a file
};
