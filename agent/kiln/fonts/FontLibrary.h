#pragma once

#include <cstdint>
#include <memory>

#include "kiln/activation/ActivationBook.h"
#include "kiln/activation/LinkFolder.h"
#include "kiln/activation/VaultCheck.h"
#include "kiln/fonts/DocumentMatcher.h"
#include "kiln/fonts/Vault.h"
#include "kiln/store/ActivationStore.h"
#include "kiln/store/ClientStore.h"
#include "kiln/store/Database.h"
#include "kiln/store/DocumentStore.h"
#include "kiln/store/FolderFileStore.h"
#include "kiln/store/FontRights.h"
#include "kiln/store/FontStore.h"
#include "kiln/store/LibraryWriter.h"
#include "kiln/store/SetStore.h"
#include "kiln/store/SettingStore.h"
#include "kiln/store/VaultFileStore.h"
#include "kiln/store/WorkgroupStore.h"
#include "kiln/system/KilnPaths.h"
#include "kiln/system/LockFile.h"

namespace kiln {

class BoundedLog;

/// An opened library: its records, its vault and what is active of it. One Kiln has a library at a time.
struct FontLibrary {
  /// Opens the library of these paths, making it if there is none, and brings what is active into step.
  ///
  /// \param paths  Must outlive the library.
  /// \param error  Receives 0; kVaultInUse when another Kiln has it; kSchemaVersionMismatch for one of a
  /// newer
  ///               Kiln; kInvalidVault for everything else, the details being logged. A library that is
  ///               refused was not changed.
  static std::unique_ptr<FontLibrary> Open(const KilnPaths& paths, BoundedLog& log, uint32_t& error);

  FontLibrary(const KilnPaths& paths, LockFile lock, std::unique_ptr<Database> opened);

  const LockFile lock;
  const std::unique_ptr<Database> database;
  Vault vault;
  LinkFolder links;
  LibraryWriter writer;
  FontStore fonts;
  WorkgroupStore workgroups;
  FolderFileStore folderFiles;
  SettingStore settings;
  ClientStore clients;
  ActivationStore activations;
  DocumentStore documents;
  ActivationBook book;
  DocumentMatcher matcher;
  SetStore sets;
  FontRights rights;
  VaultFileStore vaultFiles;
  VaultCheck vaultCheck;
};

}  // namespace kiln
