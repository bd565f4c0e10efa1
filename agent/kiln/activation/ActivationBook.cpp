#include "kiln/activation/ActivationBook.h"

#include <algorithm>
#include <set>
#include <utility>

#include "kiln/fonts/Vault.h"
#include "kiln/store/Database.h"
#include "protocol/ActivationStates.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

bool AnyGlobal(const std::vector<ActivationRow>& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const ActivationRow& row) { return IsGlobal(row.kind); });
}

bool AnyOfKind(const std::vector<ActivationRow>& rows, wire::ActivationState kind) {
  return std::any_of(rows.begin(), rows.end(), [kind](const ActivationRow& row) { return row.kind == kind; });
}

const ActivationRow* RowOf(const std::vector<ActivationRow>& rows, int64_t clientID) {
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [clientID](const ActivationRow& one) { return one.clientID == clientID; });
  return row == rows.end() ? nullptr : &*row;
}

wire::ActivationState KindFor(wire::ActivationMode mode) {
  switch (mode) {
    case wire::MODE_AUTO_LOCAL:
      return wire::ACTIVATION_AUTO_LOCAL;
    case wire::MODE_TEMPORARY:
      return wire::ACTIVATION_TEMPORARY;
    case wire::MODE_PERMANENT:
      return wire::ACTIVATION_PERMANENT;
    case wire::MODE_PREVIEW:
      return wire::ACTIVATION_PREVIEW;
    default:
      return wire::ACTIVATION_AUTO;
  }
}

// Whether programs see the font. Activations stand without that while its file has gone.
bool IsVisible(const FontRow& row, const std::vector<ActivationRow>& rows) {
  return !row.font.link_path().empty() && AnyGlobal(rows);
}

}  // namespace

// One transaction over rows and links. New links are made at once, since what can't be linked mustn't be
// recorded; links that are no longer needed go after the commit.
class ActivationBook::Change {
 public:
  explicit Change(ActivationBook& book) : mBook(book), mTransaction(book.mDatabase) {}
  ~Change() {
    for (const Link& link : mNewLinks) mBook.mLinks.Remove(link.place, link.path);
  }
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;

  bool Began() const { return mTransaction.Began(); }
  void AddedLink(const std::string& place, const std::string& path) { mNewLinks.push_back({place, path}); }
  bool Put(const ActivationRow& row) { return Check(mBook.mActivations.Put(row)); }
  bool Remove(const ActivationRow& row) { return Check(mBook.mActivations.Remove(row.fontID, row.clientID)); }
  bool Check(bool succeeded) {
    mFailed = mFailed || !succeeded;
    return succeeded;
  }

  // To be called when rows of a font have gone.
  void ReleaseFile(const FontRow& row) {
    if (row.font.link_path().empty() || mBook.mActivations.FileIsActive(row.fileID)) return;
    if (!mReleased.insert(row.fileID).second) return;
    Check(mBook.mWriter.SetLink(row.fileID, ""));
    const std::string& link = row.font.link_path();
    const size_t bucket = link.rfind('/', link.rfind('/') - 1) + 1;
    mOldLinks.push_back({link.substr(bucket), row.font.path()});
  }

  std::map<int64_t, std::string> madeVisible;  // files and where their links are now
  std::set<int64_t> lookedAt;                  // files whose state has turned out to be another one
  std::vector<uint32_t> missing;               // fonts of those that have gone

  uint32_t Commit() {
    if (mFailed || !mTransaction.Began()) return mBook.mDatabase.Error();
    if (const uint32_t error = mTransaction.Commit()) return error;
    mNewLinks.clear();
    for (const Link& link : mOldLinks) mBook.mLinks.Remove(link.place, link.path);
    return codes::kSuccess;
  }

 private:
  struct Link {
    std::string place;
    std::string path;  // in the vault
  };

  ActivationBook& mBook;
  Transaction mTransaction;
  bool mFailed = false;
  std::set<int64_t> mReleased;
  std::vector<Link> mNewLinks;
  std::vector<Link> mOldLinks;
};

ActivationBook::ActivationBook(Database& database, FontStore& fonts, ActivationStore& activations,
                               LibraryWriter& writer, LinkFolder& links)
    : mDatabase(database), mFonts(fonts), mActivations(activations), mWriter(writer), mLinks(links) {}

uint32_t ActivationBook::Start(const std::function<bool(int64_t)>& clientIsAlive) {
  Transaction transaction(mDatabase);
  if (!transaction.Began() || !mActivations.DropTemporaryByHand()) return mDatabase.Error();
  for (const int64_t client : mActivations.Clients()) {
    if (client == kUserClient || clientIsAlive(client)) continue;
    for (const ActivationRow& row : mActivations.OfClient(client)) {
      if (!mActivations.Remove(row.fontID, row.clientID)) return mDatabase.Error();
    }
  }
  std::vector<LinkFolder::Expected> expected;
  std::map<std::string, int64_t> files;
  std::vector<LibraryWriter::LinkedFile> withoutLink;
  for (LibraryWriter::LinkedFile& file : mWriter.LinkedFiles()) {
    if (!file.wanted) {
      if (!mWriter.SetLink(file.id, "")) return mDatabase.Error();
    } else if (file.link.empty()) {
      withoutLink.push_back(std::move(file));
    } else {
      files[file.link] = file.id;
      expected.push_back({file.path, file.link, file.size});
    }
  }
  // That their files have gone is for the check of the vault to note and to tell.
  for (const std::string& lost : mLinks.Reconcile(expected)) {
    if (!mWriter.SetLink(files[lost], "")) return mDatabase.Error();
  }
  for (const LibraryWriter::LinkedFile& file : withoutLink) {
    std::string link;
    const bool linked = Vault::StateOf(file.path, file.size) == FileState::kSound &&
                        mLinks.Add(file.path, file.name, link) == codes::kSuccess;
    if (!mWriter.SetLink(file.id, linked ? link : "")) return mDatabase.Error();
  }
  return transaction.Commit();
}

wire::ActivationState ActivationBook::StateFor(const FontRow& row, int64_t clientID) {
  if (row.font.is_system()) return wire::ACTIVATION_SYSTEM;
  return StateFrom(row, mActivations.OfFont(row.font.id()), clientID);
}

wire::ActivationState ActivationBook::StateFrom(const FontRow& row, const std::vector<ActivationRow>& rows,
                                                int64_t clientID) {
  if (row.font.is_system()) return wire::ACTIVATION_SYSTEM;
  if (IsVisible(row, rows)) {
    const bool permanent = AnyOfKind(rows, wire::ACTIVATION_PERMANENT);
    if (!permanent && !AnyOfKind(rows, wire::ACTIVATION_TEMPORARY)) return wire::ACTIVATION_AUTO;
    const bool conflict = mActivations.ConflictOf(row.font.id()) != 0;
    if (permanent) return conflict ? wire::ACTIVATION_OVER_CONFLICT : wire::ACTIVATION_PERMANENT;
    return conflict ? wire::ACTIVATION_TEMPORARY_OVER_CONFLICT : wire::ACTIVATION_TEMPORARY;
  }
  const ActivationRow* own = RowOf(rows, clientID);
  if (own && !IsGlobal(own->kind)) return own->kind;
  return StateOfInactive(row.file);
}

// Of all the file's fonts, the first time.
void ActivationBook::NoteState(const FontRow& row, FileState state, Change& change) {
  if (row.file == state || !change.lookedAt.insert(row.fileID).second) return;
  change.Check(mWriter.SetState(row.fileID, state));
  if (state != FileState::kMissing) return;
  const std::vector<uint32_t> fonts = mActivations.FontsOfFile(row.fileID);
  change.missing.insert(change.missing.end(), fonts.begin(), fonts.end());
}

// Whether a file that isn't active could be, which is noted.
uint32_t ActivationBook::CheckFile(const FontRow& row, Change& change) {
  const FileState state = Vault::StateOf(row.font.path(), row.font.outline_file_size());
  NoteState(row, state, change);
  if (state == FileState::kMissing) return codes::kFontMissing;
  return state == FileState::kUnusable ? codes::kCorrupt : codes::kSuccess;
}

// Links the file unless that is done. On failure nothing is recorded but the state of the file.
uint32_t ActivationBook::MakeVisible(FontRow& row, Change& change) {
  if (!row.font.link_path().empty()) return codes::kSuccess;
  if (const uint32_t error = CheckFile(row, change)) return error;
  std::string link;
  const uint32_t error = mLinks.Add(row.font.path(), row.font.outline_file_name(), link);
  if (error != codes::kSuccess) return error;
  change.AddedLink(link, row.font.path());
  change.Check(mWriter.SetLink(row.fileID, link));
  row.font.set_link_path(mLinks.PathOf(link));
  change.madeVisible[row.fileID] = row.font.link_path();
  return codes::kSuccess;
}

uint32_t ActivationBook::ActivateOne(int64_t clientID, FontRow& row, const std::vector<ActivationRow>& rows,
                                     wire::ActivationMode mode, Change& change) {
  const wire::ActivationState kind = KindFor(mode);
  const bool byHand = mode == wire::MODE_TEMPORARY || mode == wire::MODE_PERMANENT;
  const ActivationRow* user = RowOf(rows, kUserClient);
  const ActivationRow* own = RowOf(rows, clientID);
  const bool visible = IsVisible(row, rows);
  if (row.font.refused() && !visible && (IsGlobal(kind) || !own)) return codes::kLicenseComplianceViolation;
  if (IsGlobal(kind)) {
    if (const uint32_t error = MakeVisible(row, change)) return error;
  } else if (!visible) {
    if (const uint32_t error = CheckFile(row, change)) return error;
  }
  if (byHand) {
    for (const ActivationRow& other : rows) {
      if (other.clientID != kUserClient) change.Remove(other);
    }
    // What stays isn't cut short by a temporary wish.
    if (!user || kind == wire::ACTIVATION_PERMANENT) change.Put({row.font.id(), kUserClient, kind, false});
    return codes::kSuccess;
  }
  if (user) return codes::kSuccess;
  if (!own) {
    change.Put({row.font.id(), clientID, kind, AnyGlobal(rows)});
  } else if (IsGlobal(kind) && !IsGlobal(own->kind)) {
    change.Put({row.font.id(), clientID, kind, own->hold});
  }
  return codes::kSuccess;
}

void ActivationBook::ActivateRow(int64_t clientID, FontRow row, wire::ActivationMode mode, Change& change,
                                 ActivateResult& result) {
  // Another face of its file may have come before it.
  const auto made = change.madeVisible.find(row.fileID);
  if (made != change.madeVisible.end()) row.font.set_link_path(made->second);
  const std::vector<ActivationRow> before = mActivations.OfFont(row.font.id());
  const bool visible = IsVisible(row, before);
  row.font.set_state(StateFrom(row, before, clientID));
  if (!row.font.is_system()) {
    if (const uint32_t error = ActivateOne(clientID, row, before, mode, change)) {
      result.failures[row.font.id()] = error;
      return;
    }
    const bool local = !IsGlobal(KindFor(mode));
    if (!local && !visible) result.change.activated.push_back(PlaceOf(row.font, false));
    if (local && !IsActive(row.font.state())) result.change.localActivated.push_back(PlaceOf(row.font, true));
  }
  result.fonts.push_back(std::move(row));
}

uint32_t ActivationBook::Activate(int64_t clientID, std::span<const uint32_t> fontIDs,
                                  const WorkgroupScope& scope, wire::ActivationMode mode,
                                  ActivateResult& result) {
  Change change(*this);
  if (!change.Began()) return mDatabase.Error();
  std::set<uint32_t> seen;
  for (const uint32_t id : fontIDs) {
    if (!seen.insert(id).second) continue;
    if (std::optional<FontRow> row = mFonts.Load(id, scope)) {
      ActivateRow(clientID, std::move(*row), mode, change, result);
    } else {
      result.failures[id] = codes::kInvalidFontIDs;
    }
  }
  result.change.missing = change.missing;
  return change.Commit();
}

uint32_t ActivationBook::Activate(int64_t clientID, std::vector<FontRow> rows, wire::ActivationMode mode,
                                  ActivateResult& result) {
  Change change(*this);
  if (!change.Began()) return mDatabase.Error();
  for (FontRow& row : rows) ActivateRow(clientID, std::move(row), mode, change, result);
  result.change.missing = change.missing;
  return change.Commit();
}

uint32_t ActivationBook::Deactivate(int64_t clientID, std::span<const uint32_t> fontIDs, bool byHand,
                                    DeactivateResult& result) {
  Change change(*this);
  if (!change.Began()) return mDatabase.Error();
  for (const uint32_t id : std::set<uint32_t>(fontIDs.begin(), fontIDs.end())) {
    const std::vector<ActivationRow> rows = mActivations.OfFont(id);
    const ActivationRow* own = RowOf(rows, clientID);
    const std::optional<FontRow> row = mFonts.Load(id);
    if (!row || rows.empty() || (!byHand && !own)) continue;
    for (const ActivationRow& one : rows) {
      if (byHand || &one == own) change.Remove(one);
    }
    result.released.push_back(id);
    change.ReleaseFile(*row);
    if (own && !IsGlobal(own->kind)) result.change.localDeactivated.push_back(PlaceOf(row->font, true));
    if (IsVisible(*row, rows) && !AnyGlobal(mActivations.OfFont(id))) {
      result.change.deactivated.push_back(PlaceOf(row->font, false));
    }
  }
  return change.Commit();
}

uint32_t ActivationBook::EndSession(int64_t clientID, ActivationChange& result) {
  Change change(*this);
  if (!change.Began()) return mDatabase.Error();
  for (const ActivationRow& own : mActivations.OfClient(clientID)) {
    if (!own.hold && IsGlobal(own.kind)) continue;
    change.Remove(own);
    const std::optional<FontRow> row = mFonts.Load(own.fontID);
    if (!row) continue;
    change.ReleaseFile(*row);
    if (IsGlobal(own.kind) && !row->font.link_path().empty() && !AnyGlobal(mActivations.OfFont(own.fontID))) {
      result.deactivated.push_back(PlaceOf(row->font, false));
    }
  }
  return change.Commit();
}

std::vector<bool> ActivationBook::ClientStates(int64_t clientID, std::span<const uint32_t> fontIDs) {
  std::set<uint32_t> own;
  for (const ActivationRow& row : mActivations.OfClient(clientID)) {
    if (!row.hold) own.insert(row.fontID);
  }
  std::vector<bool> states;
  states.reserve(fontIDs.size());
  for (const uint32_t id : fontIDs) states.push_back(own.count(id) > 0);
  return states;
}

}  // namespace kiln
