#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "kiln/activation/ActivationBook.h"
#include "kiln/store/FontStore.h"
#include "kiln/store/WorkgroupScope.h"

namespace kiln {

/// Finds a document's fonts in the library and activates them.
class DocumentMatcher {
 public:
  /// Records of that many fonts fit into a reply.
  static constexpr size_t kMostMatches = 20000;

  DocumentMatcher(FontStore& fonts, ActivationBook& book) : mFonts(fonts), mBook(book) {}

  /// \param reply  Filled on success.
  /// \param change  What became active.
  /// \return 0; kInvalidParam for more than kMostMatches; or the database's error. With an error nothing was
  ///         activated.
  uint32_t Activate(int64_t clientID, const wire::ActivateDocumentFontsRequest& request,
                    wire::ActivateDocumentFontsReply& reply, ActivationChange& change);

  /// Fonts as the client sees them, best first by CompareCandidates(). A vault file that isn't there counts
  /// as missing, whether that was noticed before or not.
  std::vector<FontRow> Ranked(int64_t clientID, const std::vector<uint32_t>& ids, const WorkgroupScope& scope,
                              const wire::FontIdentity* identity);

 private:
  struct Choice {
    int index = 0;  // in the request
    uint32_t fontID = 0;
    bool familyMember = false;
  };
  std::optional<uint32_t> Choose(int64_t clientID, const wire::FontIdentity& identity,
                                 const WorkgroupScope& scope, bool useIdentity,
                                 wire::ProblemFont::Reason& reason);
  void AddFamilies(int64_t clientID, const WorkgroupScope& scope, std::vector<Choice>& choices);

  FontStore& mFonts;
  ActivationBook& mBook;
};

}  // namespace kiln
