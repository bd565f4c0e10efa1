#pragma once

#include "IPMUnknown.h"
#include "PMString.h"
#include "UIDRef.h"

/// The font families and styles that a document's text uses, in the order in which they are found. Belongs to
/// the document. Indices run from 0; one out of range gives the invalid UID, 0 or kNullString.
class IUsedFontList : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IUSEDFONTLIST;

  virtual int32 GetFamilyCount() const = 0;

  /// The family's object in the document's database; it has IFontFamily, also for a family that is missing.
  virtual UID GetNthFamilyUID(int32 family) const = 0;

  /// How many styles of the family are used.
  virtual int32 GetVariantCount(int32 family) const = 0;

  /// A used style as the document names it; may be empty.
  virtual PMString GetNthVariantStyle(int32 family, int32 variant) const = 0;

  /// Works the list out anew from the document's present text.
  virtual void Refresh() = 0;

  /// The list's own object, for the item list of a command.
  virtual UIDRef GetUIDRef() const = 0;
};
