#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kiln/activation/ActivationBook.h"
#include "kiln/store/FontStore.h"
#include "kiln/store/WorkgroupScope.h"

namespace kiln {

class Database;

/// Finds a document's fonts in the library and activates them.
class DocumentMatcher {
 public:
  /// Records of that many fonts fit into a reply.
  static constexpr size_t kMostMatches = 20000;

  DocumentMatcher(Database& database, FontStore& fonts, ActivationBook& book)
      : mDatabase(database), mFonts(fonts), mBook(book) {}

  /// \param reply  Filled on success.
  /// \param change  What became active, what turned out to be missing, and what is refused.
  /// \return 0; kInvalidParam for more than kMostMatches; or the database's error. With an error nothing was
  ///         activated.
  uint32_t Activate(int64_t clientID, const wire::ActivateDocumentFontsRequest& request,
                    wire::ActivateDocumentFontsReply& reply, ActivationChange& change);

  /// Fonts as the client sees them, best first by CompareCandidates().
  std::vector<FontRow> Ranked(int64_t clientID, const std::vector<uint32_t>& ids, const WorkgroupScope& scope,
                              const wire::FontIdentity* identity);

 private:
  struct Choice {
    int index = 0;  // in the request
    uint32_t fontID = 0;
    bool familyMember = false;
  };
  struct Problem {
    wire::ProblemFont::Reason reason = wire::ProblemFont::NOT_FOUND;
    uint32_t error = 0;
    uint32_t fontID = 0;  // that would have been the one; 0 for none
  };
  // What comes of a request; the rows are those of the choices, each once.
  struct Matching {
    std::vector<Choice> choices;
    std::vector<FontRow> rows;
    std::set<uint32_t> chosen;
    std::map<int, Problem> problems;  // by index in the request
    void Choose(int index, FontRow row, bool familyMember);
  };
  using Embedded = std::map<std::string, const wire::FontIdentity*>;

  void MatchOne(int64_t clientID, const wire::ActivateDocumentFontsRequest& request, int index,
                const Embedded& embedded, const WorkgroupScope& scope, Matching& matching);
  void AddFamilies(int64_t clientID, const WorkgroupScope& scope, Matching& matching);

  Database& mDatabase;
  FontStore& mFonts;
  ActivationBook& mBook;
};

}  // namespace kiln
