#include "kiln/store/LibraryWriter.h"

#include "kiln/fonts/Vault.h"

namespace kiln {
namespace {

constexpr int kFilesPerLook = 2000;

}  // namespace

LibraryWriter::LibraryWriter(Database& database, const KilnPaths& paths)
    : mPaths(paths),
      mFileWithHash(database, "SELECT id, extension FROM files WHERE hash = ?"),
      mFacesOfFile(database, "SELECT id, postscript_name FROM fonts WHERE file_id = ? ORDER BY face_index"),
      mFaceIndexes(database, "SELECT face_index FROM fonts WHERE file_id = ?"),
      mAddVaultFile(
          database,
          "INSERT INTO files (hash, extension, name, size, checksum, described) VALUES (?, ?, ?, ?, ?, 1)"
          " RETURNING id"),
      mPutSystemFile(
          database,
          "INSERT INTO files (system_path, extension, name, size, modified, described)"
          " VALUES (?, '', ?, ?, ?, 0) ON CONFLICT (system_path) DO UPDATE SET size = excluded.size,"
          " modified = excluded.modified, checksum = 0, described = 0 RETURNING id"),
      mAddFamilyGroup(database, "INSERT INTO family_groups (name) VALUES (?) ON CONFLICT DO NOTHING"),
      mFamilyGroup(database, "SELECT id FROM family_groups WHERE name = ?"),
      mPutFace(
          database,
          "INSERT INTO fonts (file_id, face_index, postscript_name, kind, foundry, version, family, style,"
          " display_name, family_group_id, kerning_checksum, glyphmark_checksum)"
          " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT (file_id, face_index) DO UPDATE SET"
          " postscript_name = excluded.postscript_name, kind = excluded.kind, foundry = excluded.foundry,"
          " version = excluded.version, family = excluded.family, style = excluded.style,"
          " display_name = excluded.display_name, family_group_id = excluded.family_group_id,"
          " kerning_checksum = excluded.kerning_checksum, glyphmark_checksum = excluded.glyphmark_checksum"
          " RETURNING id"),
      mPutInWorkgroup(
          database,
          "INSERT INTO workgroup_fonts (font_id, workgroup_id) VALUES (?, ?) ON CONFLICT DO NOTHING"),
      mRemoveFile(database, "DELETE FROM files WHERE id = ?"),
      mOrphans(database,
               "SELECT i.id, i.hash, i.extension, i.link IS NULL AND NOT EXISTS (SELECT 1 FROM fonts f"
               " WHERE f.file_id = i.id AND (EXISTS (SELECT 1 FROM workgroup_fonts m WHERE m.font_id = f.id)"
               " OR EXISTS (SELECT 1 FROM activations a WHERE a.font_id = f.id)))"
               " FROM files i WHERE i.id > ? AND i.hash IS NOT NULL ORDER BY i.id LIMIT ?"),
      mSetDescribed(database, "UPDATE files SET described = 1, checksum = ? WHERE id = ?"),
      mSetState(database, "UPDATE files SET state = ? WHERE id = ?"),
      mSetLink(database, "UPDATE files SET link = nullif(?, '') WHERE id = ?"),
      mSystemFiles(
          database,
          "SELECT system_path, id, size, modified, described FROM files WHERE system_path IS NOT NULL"),
      mLinkedFiles(
          database,
          "SELECT i.id, i.hash, i.extension, i.name, i.link, EXISTS (SELECT 1 FROM activations a JOIN fonts f"
          " ON f.id = a.font_id WHERE f.file_id = i.id AND a.kind IN (1, 3, 4)) AS wanted, i.size FROM files "
          "i"
          " WHERE i.hash IS NOT NULL AND (i.link IS NOT NULL OR wanted)") {}

LibraryWriter::KnownFile LibraryWriter::FileWithHash(const std::string& hash) {
  KnownFile file;
  mFileWithHash.Start(hash);
  while (mFileWithHash.Next()) {
    file.id = mFileWithHash.Number(0);
    file.extension = mFileWithHash.Text(1);
  }
  mFacesOfFile.Start(file.id);
  while (mFacesOfFile.Next()) {
    file.fontIDs.push_back(static_cast<uint32_t>(mFacesOfFile.Number(0)));
    file.postScriptNames.push_back(mFacesOfFile.Text(1));
  }
  return file;
}

int64_t LibraryWriter::AddVaultFile(const wire::ReadFile& file, const std::string& extension,
                                    const std::string& name) {
  mAddVaultFile.Start(file.sha256(), extension, name, file.size(), file.checksum());
  int64_t id = 0;
  while (mAddVaultFile.Next()) id = mAddVaultFile.Number(0);
  return id;
}

int64_t LibraryWriter::PutSystemFile(const std::string& path, uint64_t size, int64_t modified) {
  mPutSystemFile.Start(path, path.substr(path.rfind('/') + 1), size, modified);
  int64_t id = 0;
  while (mPutSystemFile.Next()) id = mPutSystemFile.Number(0);
  return id;
}

int64_t LibraryWriter::FamilyGroup(const std::string& name) {
  if (!mAddFamilyGroup.Run(name)) return 0;
  mFamilyGroup.Start(name);
  int64_t id = 0;
  while (mFamilyGroup.Next()) id = mFamilyGroup.Number(0);
  return id;
}

uint32_t LibraryWriter::PutFace(int64_t fileID, const wire::ReadFace& face) {
  const int64_t group = FamilyGroup(face.family_group_name());
  if (group == 0) return 0;
  mPutFace.Start(fileID, face.face_index(), face.postscript_name(), static_cast<int>(face.kind()),
                 face.foundry(), face.version(), face.family(), face.style(), face.display_name(), group,
                 face.kerning_checksum(), face.glyphmark_checksum());
  uint32_t id = 0;
  while (mPutFace.Next()) id = static_cast<uint32_t>(mPutFace.Number(0));
  return id;
}

std::set<uint32_t> LibraryWriter::FaceIndexes(int64_t fileID) {
  std::set<uint32_t> indexes;
  mFaceIndexes.Start(fileID);
  while (mFaceIndexes.Next()) indexes.insert(static_cast<uint32_t>(mFaceIndexes.Number(0)));
  return indexes;
}

bool LibraryWriter::PutInWorkgroup(uint32_t fontID, uint32_t workgroupID) {
  return mPutInWorkgroup.Run(fontID, workgroupID);
}

bool LibraryWriter::RemoveFile(int64_t fileID) {
  return mRemoveFile.Run(fileID);
}

std::vector<LibraryWriter::Orphan> LibraryWriter::Orphans(int64_t& after) {
  std::vector<Orphan> orphans;
  mOrphans.Start(after, kFilesPerLook);
  int looked = 0;
  while (mOrphans.Next()) {
    ++looked;
    after = mOrphans.Number(0);
    if (mOrphans.Number(3) == 0) continue;
    orphans.push_back({after, Vault::PathOf(mPaths, mOrphans.Text(1), mOrphans.Text(2)), {}});
  }
  if (looked < kFilesPerLook) after = 0;
  for (Orphan& orphan : orphans) {
    mFacesOfFile.Start(orphan.id);
    while (mFacesOfFile.Next()) orphan.fontIDs.push_back(static_cast<uint32_t>(mFacesOfFile.Number(0)));
  }
  return orphans;
}

bool LibraryWriter::SetDescribed(int64_t fileID, uint32_t checksum) {
  return mSetDescribed.Run(checksum, fileID);
}

bool LibraryWriter::SetState(int64_t fileID, FileState state) {
  return mSetState.Run(static_cast<int>(state), fileID);
}

bool LibraryWriter::SetLink(int64_t fileID, const std::string& link) {
  return mSetLink.Run(link, fileID);
}

std::map<std::string, LibraryWriter::SystemFile> LibraryWriter::SystemFiles() {
  std::map<std::string, SystemFile> files;
  mSystemFiles.Start();
  while (mSystemFiles.Next()) {
    SystemFile& file = files[mSystemFiles.Text(0)];
    file.id = mSystemFiles.Number(1);
    file.size = static_cast<uint64_t>(mSystemFiles.Number(2));
    file.modified = mSystemFiles.Number(3);
    file.described = mSystemFiles.Number(4) != 0;
  }
  return files;
}

std::vector<LibraryWriter::LinkedFile> LibraryWriter::LinkedFiles() {
  std::vector<LinkedFile> files;
  mLinkedFiles.Start();
  while (mLinkedFiles.Next()) {
    LinkedFile& file = files.emplace_back();
    file.id = mLinkedFiles.Number(0);
    file.path = Vault::PathOf(mPaths, mLinkedFiles.Text(1), mLinkedFiles.Text(2));
    file.name = mLinkedFiles.Text(3);
    file.link = mLinkedFiles.Text(4);
    file.wanted = mLinkedFiles.Number(5) != 0;
    file.size = static_cast<uint64_t>(mLinkedFiles.Number(6));
  }
  return files;
}

}  // namespace kiln
