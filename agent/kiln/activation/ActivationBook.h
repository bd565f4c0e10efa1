#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "kiln/activation/ActivationChange.h"
#include "kiln/activation/LinkFolder.h"
#include "kiln/store/ActivationStore.h"
#include "kiln/store/FontStore.h"
#include "kiln/store/LibraryWriter.h"

namespace kiln {

class Database;

/// Keeps who has which font active, and the link folder in step with it. The rules are told in Kiln.proto
/// under Activation.
///
/// Each change is one transaction: with an error nothing has changed. The links follow the records, so that a
/// Kiln that was killed between the two is set right by Start().
class ActivationBook {
 public:
  ActivationBook(Database& database, FontStore& fonts, ActivationStore& activations, LibraryWriter& writer,
                 LinkFolder& links);

  /// Drops what has ended while no Kiln ran and brings the link folder into step.
  /// \param clientIsAlive  Whether the process of that client still runs.
  /// \return 0 or the database's error.
  uint32_t Start(const std::function<bool(int64_t clientID)>& clientIsAlive);

  /// The state of a font as a client sees it now.
  wire::ActivationState StateFor(const FontRow& row, int64_t clientID);

  struct ActivateResult {
    std::vector<FontRow> fonts;  ///< in order; `font.state` is that before the call
    /// ID and why: kInvalidFontIDs, kFontMissing, kLicenseComplianceViolation, kDiskFull ...
    std::map<uint32_t, uint32_t> failures;
    ActivationChange change;
  };
  /// Activates fonts for a client, or by hand. An ID that stands twice is one. A font that is marked as not
  /// to be activated is refused, but for one that is active already. \param scope  Gives the workgroup that
  /// the records name; a font outside it isn't known. \return 0 or the database's error. A font that can't be
  /// activated is no error.
  uint32_t Activate(int64_t clientID, std::span<const uint32_t> fontIDs, const WorkgroupScope& scope,
                    wire::ActivationMode mode, ActivateResult& result);
  /// The same for fonts that have been loaded since the last change, each once.
  uint32_t Activate(int64_t clientID, std::vector<FontRow> rows, wire::ActivationMode mode,
                    ActivateResult& result);

  struct DeactivateResult {
    std::vector<uint32_t> released;  ///< given back
    ActivationChange change;
  };
  uint32_t Deactivate(int64_t clientID, std::span<const uint32_t> fontIDs, bool byHand,
                      DeactivateResult& result);

  /// Ends a client's holds, and what is active in its process only.
  uint32_t EndSession(int64_t clientID, ActivationChange& change);

  /// For each ID: does the client's own activation of it stand?
  std::vector<bool> ClientStates(int64_t clientID, std::span<const uint32_t> fontIDs);

 private:
  class Change;

  wire::ActivationState StateFrom(const FontRow& row, const std::vector<ActivationRow>& rows,
                                  int64_t clientID);
  void ActivateRow(int64_t clientID, FontRow row, wire::ActivationMode mode, Change& change,
                   ActivateResult& result);
  uint32_t ActivateOne(int64_t clientID, FontRow& row, const std::vector<ActivationRow>& rows,
                       wire::ActivationMode mode, Change& change);
  uint32_t MakeVisible(FontRow& row, Change& change);
  uint32_t CheckFile(const FontRow& row, Change& change);
  void NoteState(const FontRow& row, FileState state, Change& change);

  Database& mDatabase;
  FontStore& mFonts;
  ActivationStore& mActivations;
  LibraryWriter& mWriter;
  LinkFolder& mLinks;
};

}  // namespace kiln
