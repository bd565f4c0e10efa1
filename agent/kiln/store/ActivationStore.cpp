#include "kiln/store/ActivationStore.h"

namespace kiln {

ActivationStore::ActivationStore(Database& database)
    : mOfFont(database,
              "SELECT font_id, client_id, kind, hold FROM activations WHERE font_id = ? ORDER BY client_id"),
      mOfClient(
          database,
          "SELECT font_id, client_id, kind, hold FROM activations WHERE client_id = ? ORDER BY font_id"),
      mList(database,
            "SELECT a.font_id, f.postscript_name, a.kind, a.hold, c.uuid, c.pid, c.program FROM activations a"
            " JOIN fonts f ON f.id = a.font_id JOIN clients c ON c.id = a.client_id ORDER BY a.font_id, "
            "a.client_id"),
      mClients(database, "SELECT DISTINCT client_id FROM activations ORDER BY client_id"),
      mPut(database,
           "INSERT INTO activations (font_id, client_id, kind, hold) VALUES (?, ?, ?, ?)"
           " ON CONFLICT (font_id, client_id) DO UPDATE SET kind = excluded.kind, hold = excluded.hold"),
      mRemove(database, "DELETE FROM activations WHERE font_id = ? AND client_id = ?"),
      mDropTemporary(database, "DELETE FROM activations WHERE kind = 3"),
      mFileIsActive(database,
                    "SELECT EXISTS (SELECT 1 FROM activations a JOIN fonts f ON f.id = a.font_id"
                    " WHERE f.file_id = ? AND a.kind IN (1, 3, 4))"),
      mConflict(
          database,
          "SELECT min(f.id) FROM fonts me JOIN fonts f ON f.postscript_name = me.postscript_name"
          " AND f.id <> me.id JOIN files i ON i.id = f.file_id WHERE me.id = ? AND (i.system_path IS NOT NULL"
          " OR (i.link IS NOT NULL"
          " AND EXISTS (SELECT 1 FROM activations a WHERE a.font_id = f.id AND a.kind IN (1, 3, 4))))"),
      mFontsOfFile(database, "SELECT id FROM fonts WHERE file_id = ? ORDER BY face_index"),
      mCount(database,
             "SELECT count(DISTINCT a.font_id) FROM activations a JOIN fonts f ON f.id = a.font_id"
             " JOIN files i ON i.id = f.file_id WHERE a.kind IN (1, 3, 4) AND i.link IS NOT NULL") {}

std::vector<ActivationRow> ActivationStore::Rows(Statement& statement) {
  std::vector<ActivationRow> rows;
  while (statement.Next()) {
    rows.push_back({static_cast<uint32_t>(statement.Number(0)), statement.Number(1),
                    static_cast<wire::ActivationState>(statement.Number(2)), statement.Number(3) != 0});
  }
  return rows;
}

int64_t ActivationStore::One(Statement& statement) {
  int64_t number = 0;
  while (statement.Next()) number = statement.Number(0);
  return number;
}

std::vector<ActivationRow> ActivationStore::OfFont(uint32_t fontID) {
  mOfFont.Start(fontID);
  return Rows(mOfFont);
}

std::vector<ActivationRow> ActivationStore::OfClient(int64_t clientID) {
  mOfClient.Start(clientID);
  return Rows(mOfClient);
}

std::vector<wire::Activation> ActivationStore::List() {
  std::vector<wire::Activation> list;
  mList.Start();
  while (mList.Next()) {
    wire::Activation& activation = list.emplace_back();
    activation.set_font_id(static_cast<uint32_t>(mList.Number(0)));
    activation.set_postscript_name(mList.Text(1));
    activation.set_kind(static_cast<wire::ActivationState>(mList.Number(2)));
    activation.set_hold(mList.Number(3) != 0);
    activation.set_client_uuid(mList.Text(4));
    activation.set_client_pid(static_cast<uint32_t>(mList.Number(5)));
    activation.set_client_program(mList.Text(6));
  }
  return list;
}

std::vector<int64_t> ActivationStore::Clients() {
  std::vector<int64_t> clients;
  mClients.Start();
  while (mClients.Next()) clients.push_back(mClients.Number(0));
  return clients;
}

bool ActivationStore::Put(const ActivationRow& row) {
  return mPut.Run(row.fontID, row.clientID, static_cast<int>(row.kind), row.hold);
}

bool ActivationStore::Remove(uint32_t fontID, int64_t clientID) {
  return mRemove.Run(fontID, clientID);
}

bool ActivationStore::DropTemporaryByHand() {
  return mDropTemporary.Run();
}

bool ActivationStore::FileIsActive(int64_t fileID) {
  mFileIsActive.Start(fileID);
  return One(mFileIsActive) != 0;
}

uint32_t ActivationStore::ConflictOf(uint32_t fontID) {
  mConflict.Start(fontID);
  return static_cast<uint32_t>(One(mConflict));
}

std::vector<uint32_t> ActivationStore::FontsOfFile(int64_t fileID) {
  std::vector<uint32_t> fonts;
  mFontsOfFile.Start(fileID);
  while (mFontsOfFile.Next()) fonts.push_back(static_cast<uint32_t>(mFontsOfFile.Number(0)));
  return fonts;
}

uint32_t ActivationStore::CountOfActiveFonts() {
  mCount.Start();
  return static_cast<uint32_t>(One(mCount));
}

}  // namespace kiln
