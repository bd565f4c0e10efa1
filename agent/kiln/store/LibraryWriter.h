#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kiln/store/FileState.h"
#include "kiln/store/Statement.h"
#include "kiln/system/KilnPaths.h"
#include "protocol/FontReading.pb.h"

namespace kiln {

class Database;

/// Writes files and their faces. Each call belongs into a transaction of the caller's; false or 0 means that
/// the database failed, and the caller rolls back.
class LibraryWriter {
 public:
  LibraryWriter(Database& database, const KilnPaths& paths);

  struct KnownFile {
    int64_t id = 0;  ///< 0: not known
    std::string extension;
    std::vector<uint32_t> fontIDs;             ///< by ascending face index
    std::vector<std::string> postScriptNames;  ///< one per font
  };
  /// The file of the vault with that content.
  KnownFile FileWithHash(const std::string& hash);

  /// \return The new file's ID.
  int64_t AddVaultFile(const wire::ReadFile& file, const std::string& extension, const std::string& name);
  /// Adds a system file, or brings one that is known under the path up to date; its checksum isn't known yet.
  int64_t PutSystemFile(const std::string& path, uint64_t size, int64_t modified);
  /// Adds a face to a file, or writes its data anew and keeps its ID.
  uint32_t PutFace(int64_t fileID, const wire::ReadFace& face);
  std::set<uint32_t> FaceIndexes(int64_t fileID);
  bool PutInWorkgroup(uint32_t fontID, uint32_t workgroupID);
  /// With all its fonts.
  bool RemoveFile(int64_t fileID);

  struct Orphan {
    int64_t id = 0;
    std::string path;  ///< in the vault
    std::vector<uint32_t> fontIDs;
  };
  /// Vault files of which no workgroup holds a font and no font is active. Looks at some thousand files.
  /// \param after  The file to begin behind, 0 at first; receives the last one looked at, 0 at the end.
  std::vector<Orphan> Orphans(int64_t& after);

  /// Notes that all is known of a system file that reading it can tell.
  bool SetDescribed(int64_t fileID, uint32_t checksum);
  bool SetState(int64_t fileID, FileState state);
  /// \param link  Relative to the link folder; empty for none.
  bool SetLink(int64_t fileID, const std::string& link);

  struct SystemFile {
    int64_t id = 0;
    uint64_t size = 0;
    int64_t modified = 0;
    bool described = false;
  };
  std::map<std::string, SystemFile> SystemFiles();

  struct LinkedFile {
    int64_t id = 0;
    std::string path;  ///< in the vault
    std::string name;
    std::string link;     ///< empty for none
    bool wanted = false;  ///< a font of it is active for all programs
    uint64_t size = 0;
  };
  /// Files that have a link, or should.
  std::vector<LinkedFile> LinkedFiles();

 private:
  int64_t FamilyGroup(const std::string& name);

  const KilnPaths& mPaths;
  Statement mFileWithHash;
  Statement mFacesOfFile;
  Statement mFaceIndexes;
  Statement mAddVaultFile;
  Statement mPutSystemFile;
  Statement mAddFamilyGroup;
  Statement mFamilyGroup;
  Statement mPutFace;
  Statement mPutInWorkgroup;
  Statement mRemoveFile;
  Statement mOrphans;
  Statement mSetDescribed;
  Statement mSetState;
  Statement mSetLink;
  Statement mSystemFiles;
  Statement mLinkedFiles;
};

}  // namespace kiln
