#pragma once

#include <cstdint>

#include "protocol/Kiln.pb.h"

/// Which of several fonts of one name a document gets.
namespace kiln {

/// How far a font is the one that a document was made with: one bit per field that both know and that agrees,
/// those that say more in higher places, so that a greater number is a better match. Texts agree but for
/// case. 0 when the identity holds nothing but a name.
uint32_t Agreement(const wire::FontIdentity& identity, const wire::Font& font);

/// Below 0 when `first` is the better one, above 0 when `second` is; 0 only for the same font. The order of
/// the rules is told in Kiln.proto with ActivateDocumentFontsRequest. `state` of both must be set. \param
/// identity  May be null: then only the ranking counts.
int CompareCandidates(const wire::FontIdentity* identity, const wire::Font& first, const wire::Font& second);

}  // namespace kiln
