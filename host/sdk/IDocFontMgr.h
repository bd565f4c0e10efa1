#pragma once

#include "IPMUnknown.h"
#include "PMString.h"
#include "UID.h"

/// The font families that a document knows. Belongs to the document's workspace.
class IDocFontMgr : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IDOCFONTMGR;

  /// Looks a family up by name, and binds it to the installed fonts when that has not been done.
  ///
  /// \param style  A style that the family has to have; empty for any.
  /// \param addIfMissing  Makes an object for a family that the document does not know yet.
  /// \param rebind  Looks at the installed fonts again for a family that was missing.
  /// \return The family's object, or kInvalidUID.
  virtual UID GetFamilyUID(const PMString& familyName, const PMString& style, bool addIfMissing,
                           bool rebind) = 0;
};
