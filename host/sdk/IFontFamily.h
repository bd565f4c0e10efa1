#pragma once

#include "IPMUnknown.h"
#include "PMString.h"

/// One font family with its faces, as a document knows it. A family that is not installed has the faces that
/// the document's own font table tells.
class IFontFamily : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IFONTFAMILY;

  virtual PMString GetFamilyName() const = 0;

  virtual int32 GetFaceCount() const = 0;
  /// \param face  From 0 to GetFaceCount() - 1.
  virtual PMString GetNthFaceStyle(int32 face) const = 0;
  /// \return kNullString when the face has no real PostScript name.
  virtual PMString GetNthFacePostscriptName(int32 face) const = 0;

  /// The PostScript name of the face with a style.
  ///
  /// \param getOnlyRealPSName  True gives kNullString for a style without a real name. False falls back to
  ///        a name that the host makes up: the family's name without its white space.
  /// \param useDocumentFontTable  True also takes the name that the document's own font table tells, which
  ///        is where the name of a missing font comes from. False asks the installed fonts alone.
  virtual PMString GetFacePostscriptName(const PMString& style, bool getOnlyRealPSName,
                                         bool useDocumentFontTable) const = 0;
};
