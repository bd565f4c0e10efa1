#pragma once

#include <cstdint>
#include <span>

#include "kiln/activation/ActivationChange.h"
#include "kiln/activation/LinkFolder.h"
#include "kiln/store/ActivationStore.h"
#include "kiln/store/FontStore.h"
#include "kiln/store/LibraryWriter.h"
#include "kiln/store/VaultFileStore.h"

namespace kiln {

class Database;

/// Looks whether files of the vault are there and sound, and brings what is noted and what is active into
/// step.
///
/// A file that has gone while it is active is put back from its link, so that nothing is lost. Without link
/// it is missing: its fonts are no longer active for programs, though their activations stand. When it is
/// back, they are active again.
///
/// A file that is there but isn't what was put there is noted as unusable, until it is replaced. If it is
/// active, it stays so: what programs see is the same file. A link that isn't the file's any more is made
/// anew.
class VaultCheck {
 public:
  VaultCheck(Database& database, FontStore& fonts, ActivationStore& activations, LibraryWriter& writer,
             LinkFolder& links);

  /// \param change  Gets what has changed.
  /// \return 0, or the database's error, and then nothing has changed.
  uint32_t Look(std::span<const VaultFile> files, ActivationChange& change);

 private:
  bool LookAt(const VaultFile& file, ActivationChange& change);
  bool Lost(const VaultFile& file, ActivationChange& change);
  bool Found(const VaultFile& file, ActivationChange& change);
  std::vector<FontRow> ActiveFonts(int64_t fileID);

  Database& mDatabase;
  FontStore& mFonts;
  ActivationStore& mActivations;
  LibraryWriter& mWriter;
  LinkFolder& mLinks;
};

}  // namespace kiln
