#pragma once

#include <cstdint>
#include <vector>

#include "kiln/store/Statement.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

class Database;

/// The client to whom activations by hand belong.
inline constexpr int64_t kUserClient = 1;

/// One client's activation of one font.
struct ActivationRow {
  uint32_t fontID = 0;
  int64_t clientID = 0;
  wire::ActivationState kind =
      wire::ACTIVATION_INACTIVE;  ///< AUTO, AUTO_LOCAL, TEMPORARY, PERMANENT or PREVIEW
  bool hold = false;
};

/// The rows of the activations; what they mean is ActivationBook's.
class ActivationStore {
 public:
  explicit ActivationStore(Database& database);

  std::vector<ActivationRow> OfFont(uint32_t fontID);
  std::vector<ActivationRow> OfClient(int64_t clientID);
  std::vector<wire::Activation> List();

  /// Clients that have any.
  std::vector<int64_t> Clients();

  bool Put(const ActivationRow& row);
  bool Remove(uint32_t fontID, int64_t clientID);
  /// What the user activated for one run of Kiln.
  bool DropTemporaryByHand();

  /// A font of the file is active for all programs.
  bool FileIsActive(int64_t fileID);
  /// The first of the other fonts with the PostScript name of this one that are active for all programs; 0
  /// for none.
  uint32_t ConflictOf(uint32_t fontID);
  std::vector<uint32_t> FontsOfFile(int64_t fileID);
  uint32_t CountOfActiveFonts();

 private:
  std::vector<ActivationRow> Rows(Statement& statement);
  int64_t One(Statement& statement);

  Statement mOfFont;
  Statement mOfClient;
  Statement mList;
  Statement mClients;
  Statement mPut;
  Statement mRemove;
  Statement mDropTemporary;
  Statement mFileIsActive;
  Statement mConflict;
  Statement mFontsOfFile;
  Statement mCount;
};

}  // namespace kiln
