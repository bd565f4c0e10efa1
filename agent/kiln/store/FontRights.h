#pragma once

#include <cstdint>
#include <span>

#include "kiln/store/Statement.h"

namespace kiln {

class Database;

/// What the workgroups of a font allow: activation (the compliance rule) and export.
class FontRights {
 public:
  explicit FontRights(Database& database);

  /// Marks fonts of a workgroup as not to be activated, or takes the mark back; all or nothing.
  /// \return As Kiln.proto tells with SetComplianceRequest, or the database's error.
  uint32_t SetRefused(uint32_t workgroupID, std::span<const uint32_t> fontIDs, bool refused);

  /// A font may be copied out of the library when one of its workgroups that show allows it, and a system
  /// font always. False for an ID that isn't known.
  bool MayExport(uint32_t fontID);

 private:
  Database& mDatabase;
  Statement mWorkgroup;
  Statement mSetRefused;
  Statement mMayExport;
};

}  // namespace kiln
