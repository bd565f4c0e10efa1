#include "kiln/activation/VaultCheck.h"

#include <utility>

#include "kiln/fonts/Vault.h"
#include "kiln/store/Database.h"
#include "protocol/ActivationStates.h"
#include "protocol/ErrorCodes.h"

namespace kiln {

VaultCheck::VaultCheck(Database& database, FontStore& fonts, ActivationStore& activations,
                       LibraryWriter& writer, LinkFolder& links)
    : mDatabase(database), mFonts(fonts), mActivations(activations), mWriter(writer), mLinks(links) {}

uint32_t VaultCheck::Look(std::span<const VaultFile> files, ActivationChange& change) {
  ActivationChange made;
  Transaction transaction(mDatabase);
  if (!transaction.Began()) return mDatabase.Error();
  for (const VaultFile& file : files) {
    if (!LookAt(file, made)) return mDatabase.Error();
  }
  if (const uint32_t error = transaction.Commit()) return error;
  change.activated.insert(change.activated.end(), made.activated.begin(), made.activated.end());
  change.deactivated.insert(change.deactivated.end(), made.deactivated.begin(), made.deactivated.end());
  change.missing.insert(change.missing.end(), made.missing.begin(), made.missing.end());
  return codes::kSuccess;
}

// False when the database failed.
bool VaultCheck::LookAt(const VaultFile& file, ActivationChange& change) {
  const FileState state = Vault::StateOf(file.path, file.size);
  if (state == FileState::kSound) return Found(file, change);
  if (!file.link.empty()) {
    if (mLinks.Restore(file.link, file.path, file.size)) return Found(file, change);
    // As long as programs see it, it isn't lost; a later look may find room to put it back.
    if (state == FileState::kMissing && mLinks.Holds(file.link)) return true;
  }
  if (state == FileState::kMissing) return (file.state == state && file.link.empty()) || Lost(file, change);
  return file.state == state || mWriter.SetState(file.id, state);
}

bool VaultCheck::Lost(const VaultFile& file, ActivationChange& change) {
  for (const FontRow& row : ActiveFonts(file.id)) {
    if (!file.link.empty()) change.deactivated.push_back(PlaceOf(row.font, false));
  }
  if (file.state != FileState::kMissing) {
    for (const uint32_t font : mActivations.FontsOfFile(file.id)) change.missing.push_back(font);
  }
  if (!file.link.empty()) {
    mLinks.Remove(file.link, file.path);
    if (!mWriter.SetLink(file.id, "")) return false;
  }
  return mWriter.SetState(file.id, FileState::kMissing);
}

bool VaultCheck::Found(const VaultFile& file, ActivationChange& change) {
  if (file.state != FileState::kSound && !mWriter.SetState(file.id, FileState::kSound)) return false;
  if (!file.link.empty()) {
    mLinks.Renew(file.link, file.path, file.size);
    return true;
  }
  if (!mActivations.FileIsActive(file.id)) return true;
  std::string link;
  if (mLinks.Add(file.path, file.name, link) != codes::kSuccess) return true;
  if (!mWriter.SetLink(file.id, link)) {
    mLinks.Remove(link, file.path);
    return false;
  }
  for (const FontRow& row : ActiveFonts(file.id)) change.activated.push_back(PlaceOf(row.font, false));
  return true;
}

std::vector<FontRow> VaultCheck::ActiveFonts(int64_t fileID) {
  std::vector<FontRow> active;
  for (const uint32_t font : mActivations.FontsOfFile(fileID)) {
    bool global = false;
    for (const ActivationRow& row : mActivations.OfFont(font)) global = global || IsGlobal(row.kind);
    if (!global) continue;
    if (std::optional<FontRow> row = mFonts.Load(font)) active.push_back(std::move(*row));
  }
  return active;
}

}  // namespace kiln
