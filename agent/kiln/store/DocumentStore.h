#pragma once

#include <cstdint>

#include "kiln/store/Statement.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

class Database;

/// Which fonts the documents use that were saved with the plug-in at work.
class DocumentStore {
 public:
  explicit DocumentStore(Database& database);

  /// Replaces what was known of the document's path. Makes its own transaction.
  /// \return 0 or the database's error.
  uint32_t Save(const wire::SaveDocumentFontsRequest& request);

 private:
  Database& mDatabase;
  Statement mRemove;
  Statement mAdd;
  Statement mAddFont;
};

}  // namespace kiln
