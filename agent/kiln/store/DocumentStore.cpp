#include "kiln/store/DocumentStore.h"

#include <ctime>

#include "kiln/store/Database.h"
#include "protocol/ErrorCodes.h"

namespace kiln {

DocumentStore::DocumentStore(Database& database)
    : mDatabase(database),
      mRemove(database, "DELETE FROM documents WHERE path = ?"),
      mAdd(database,
           "INSERT INTO documents (path, host_name, host_category, saved) VALUES (?, ?, ?, ?) RETURNING id"),
      mAddFont(database,
               "INSERT INTO document_fonts (document_id, position, postscript_name, identity) VALUES (?, ?, "
               "?, ?)") {}

uint32_t DocumentStore::Save(const wire::SaveDocumentFontsRequest& request) {
  Transaction transaction(mDatabase);
  if (!transaction.Began() || !mRemove.Run(request.path())) return mDatabase.Error();
  mAdd.Start(request.path(), request.host_display_name(), request.host_category(),
             static_cast<int64_t>(time(nullptr)));
  int64_t document = 0;
  while (mAdd.Next()) document = mAdd.Number(0);
  if (document == 0) return mDatabase.Error();
  int position = 0;
  for (const wire::FontIdentity& font : request.fonts()) {
    if (!mAddFont.Run(document, position++, font.postscript_name(), font.SerializeAsString())) {
      return mDatabase.Error();
    }
  }
  return transaction.Commit();
}

}  // namespace kiln
