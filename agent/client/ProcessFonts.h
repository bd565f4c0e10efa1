#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "client/FontSystem.h"

/// The agent's fonts that this process was made to see at once, by font ID. A file holds several fonts when
/// it is a collection: it goes with the last of them.
///
/// Thread: any; one mutex, held across the calls to the font system. Activate() and Deactivate() belong on
/// the thread on which the host uses its fonts (see FontconfigSystem).
class ProcessFonts {
 public:
  /// A font of the agent with the file that it lies in.
  struct Font {
    unsigned int id = 0;
    std::string file;
    bool local = false;  // active for this process alone
  };
  /// What the agent says has happened to a font.
  struct Change {
    unsigned int fontID = 0;
    bool active = false;
    std::string file;    // where other programs see or saw it; empty when they never did
    uint64_t order = 0;  // of the message that says it (Connection::Incoming)
  };

  /// \param system  Owned.
  explicit ProcessFonts(std::unique_ptr<FontSystem> system);

  /// Makes fonts visible to this process before it returns.
  ///
  /// \param order  Of the message that said so.
  /// \return The IDs of those that can't be seen, in order; the others stay all the same.
  std::vector<unsigned int> Activate(const std::vector<Font>& fonts, uint64_t order);

  /// Takes fonts away again; unknown IDs are passed over. All of them cost one change of the font system.
  ///
  /// \param gone  Active for nobody now.
  /// \param released  Given back by this process: they go when it alone had them. What others keep active
  /// stays
  ///     visible here as well.
  void Deactivate(const std::vector<unsigned int>& gone, const std::vector<unsigned int>& released);

  /// Takes all fonts away.
  void DeactivateAll();

  /// Whether Follow() has something to do: fonts that others activated and this process can't see, or fonts
  /// it sees that are active no more.
  bool NeedsToFollow(const std::vector<Change>& changes) const;

  /// Makes the process see what others did, in one reading of the font folders. Not for the host's thread.
  void Follow(const std::vector<Change>& changes);

  /// Reads the font folders anew when they have changed or the host dropped the fonts. Not for the host's
  /// thread.
  void ReloadIfStale();

  /// How often ReloadIfStale() is due; 0 is never.
  std::chrono::seconds CheckInterval() const { return mSystem->CheckInterval(); }

 private:
  struct Place {
    std::string file;
    uint64_t order = 0;
    bool local = false;
  };
  /// The last word on each font, without those that a later activation by this process has overtaken.
  std::map<unsigned int, const Change*> LastOf(const std::vector<Change>& changes) const;
  std::vector<std::string> Forget(const std::vector<unsigned int>& fontIDs);

  const std::unique_ptr<FontSystem> mSystem;
  mutable std::mutex mMutex;
  std::map<unsigned int, Place> mPlaces;
  std::map<std::string, unsigned int> mFontsInFile;  // how many of mPlaces lie in a file
};
