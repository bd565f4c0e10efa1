#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kiln/store/FileState.h"
#include "kiln/store/Statement.h"
#include "kiln/store/WorkgroupScope.h"
#include "kiln/system/KilnPaths.h"
#include "protocol/FontReading.pb.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

class Database;

/// A font with what only Kiln needs of it. `font.state` isn't the store's: ActivationBook fills it.
struct FontRow {
  wire::Font font;
  int64_t fileID = 0;
  FileState file = FileState::kSound;
};

/// The faces of the library's files and of the system's. Reading only; LibraryWriter writes.
class FontStore {
 public:
  FontStore(Database& database, const KilnPaths& paths);

  /// \param scope  Gives the workgroup that the record names: the first of the scope that holds the font, a
  ///               hidden one last. None (ID 0) for a font that was found without any.
  /// \return Nothing for an unknown ID and for a font that is in no workgroup of the scope.
  std::optional<FontRow> Load(uint32_t id, const WorkgroupScope& scope = WorkgroupScope::Anywhere());

  /// Fonts of that exact name, by ascending ID. The family is the four-style or the typographic one.
  std::vector<uint32_t> WithPostScriptName(const std::string& name);
  std::vector<uint32_t> WithFamily(const std::string& name);
  std::vector<uint32_t> InFamilyGroup(uint32_t group);
  /// Fonts of a scope behind an ID, by ascending ID, up to `limit` of them.
  std::vector<uint32_t> After(uint32_t id, uint32_t limit, const WorkgroupScope& scope);

  uint32_t CountOfLibrary();
  uint32_t CountOfSystem();

 private:
  std::vector<uint32_t> IDs(Statement& statement);
  bool ReadWorkgroup(const WorkgroupScope& scope, wire::Font& font);

  const KilnPaths& mPaths;
  Statement mLoad;
  Statement mWorkgroups;
  Statement mWithPostScriptName;
  Statement mWithFamily;
  Statement mInFamilyGroup;
  Statement mAfter;
  Statement mAfterInWorkgroup;
  Statement mCountOfLibrary;
  Statement mCountOfSystem;
};

}  // namespace kiln
