#pragma once

#include "IPMFont.h"
#include "IPMUnknown.h"
#include "PMString.h"

/// The host's view of the installed and activated fonts. Belongs to the session, together with an ISubject
/// that broadcasts kFontSystemChangedMsg.
class IFontMgr : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IFONTMGR;

  /// For QueryFont(): answer with the font of exactly this name and never with a substitute.
  static constexpr uint32 kNoSubstitution = 0x40000000;

  /// \param postscriptName  The font's PostScript name.
  /// \param flags  0 or kNoSubstitution.
  /// \return The font with a reference for the caller, or null when the host does not have it.
  virtual IPMFont* QueryFont(const PMString& postscriptName, uint32 flags) = 0;

  /// A number that is another one each time the host finds that the fonts of the system have changed.
  ///
  /// \param update  Looks at the fonts of the system first.
  /// \param force  Looks at them even if nothing seems to have changed since the last time.
  virtual int32 GetFontChangeSeed(bool update, bool force) = 0;

  /// Has everything that shows or sets fonts take up what the last update found.
  virtual void Refresh() = 0;
};
