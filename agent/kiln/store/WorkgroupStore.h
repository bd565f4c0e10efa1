#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kiln/store/Statement.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

class Database;

/// The named collections of fonts, and which font is in which. What may be done with them is told by those
/// who do it (UserLibraries, GoogleLibrary, FontServer).
///
/// Writing calls belong into a transaction of the caller's; false or 0 means that the database failed, and
/// the caller rolls back.
class WorkgroupStore {
 public:
  explicit WorkgroupStore(Database& database);

  /// All that aren't hidden, by ascending ID, each with the number of its fonts.
  std::vector<wire::Workgroup> Listed();
  /// Nothing for an unknown ID, and for a hidden one.
  std::optional<wire::WorkgroupType> TypeOf(uint32_t id);
  /// Hidden or not.
  bool Exists(uint32_t id);
  /// A listed workgroup other than `exceptID` has the name.
  bool NameIsTaken(const std::string& name, uint32_t exceptID);
  /// False for an unknown ID, and for a hidden one.
  bool AllowsExport(uint32_t id);

  /// A workgroup that is filled from a folder.
  struct FromFolder {
    uint32_t id = 0;
    std::string name;
    wire::WorkgroupType type = wire::WORKGROUP_SERVER;
    std::string folder;
    bool hidden = false;
  };
  /// By ascending ID, hidden ones too.
  std::vector<FromFolder> FromFolders();
  /// Of the user's own libraries.
  std::vector<uint32_t> Local();

  /// \param folder  Empty for a workgroup that isn't filled from one.
  /// \return The new one's ID.
  uint32_t Add(const std::string& name, wire::WorkgroupType type, const std::string& folder);
  /// With its sets. Its fonts stay.
  bool Remove(uint32_t id);
  bool SetName(uint32_t id, const std::string& name);
  bool SetType(uint32_t id, wire::WorkgroupType type);
  bool SetFolder(uint32_t id, const std::string& folder);
  bool SetHidden(uint32_t id, bool hidden);
  bool SetExportAllowed(uint32_t id, bool allowed);

  bool Holds(uint32_t id, uint32_t fontID);
  /// The font is in another workgroup, too, hidden or not.
  bool OthersHold(uint32_t id, uint32_t fontID);
  bool TakeOut(uint32_t id, uint32_t fontID);
  /// Puts the fonts of one that no other listed workgroup holds into another, with the mark that they aren't
  /// to be activated.
  bool HandOver(uint32_t id, uint32_t toID);

  /// Marks the fonts of these PostScript names, and no others of the workgroup, as not to be activated.
  template <class Names>
  bool RefuseOnly(uint32_t id, const Names& postScriptNames) {
    bool fine = mAcceptAll.Run(id);
    for (const std::string& name : postScriptNames) fine = fine && Refuse(id, name);
    return fine;
  }
  bool Refuse(uint32_t id, const std::string& postScriptName) { return mRefuse.Run(id, postScriptName); }

 private:
  Statement mListed;
  Statement mTypeOf;
  Statement mExists;
  Statement mNameIsTaken;
  Statement mAllowsExport;
  Statement mFromFolders;
  Statement mLocal;
  Statement mAdd;
  Statement mRemove;
  Statement mSetName;
  Statement mSetType;
  Statement mSetFolder;
  Statement mSetHidden;
  Statement mSetExportAllowed;
  Statement mHolds;
  Statement mOthersHold;
  Statement mTakeOut;
  Statement mHandOver;
  Statement mAcceptAll;
  Statement mRefuse;
};

}  // namespace kiln
