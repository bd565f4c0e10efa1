#pragma once

#include "IDFile.h"
#include "IPMUnknown.h"
#include "UIDRef.h"

/// What a signal says about its document, and where a responder answers how much the host may show its user
/// while it goes on.
class IDocumentSignalData : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IDOCUMENTSIGNALDATA;

  /// How much the host shows, as values of the fourth argument of Set().
  enum UIFlags : int32 {
    kSuppressUI = 0,  ///< No alert about missing fonts or links.
    kFullUI = 2,      ///< Every alert; how each signal starts.
  };

  /// The document. Before the open it exists already, with its links; afterwards the reference names nothing.
  virtual UIDRef GetDocument() const = 0;

  /// The file that is being opened or written; empty for a document without one.
  virtual IDFile GetFile() const = 0;

  /// Whether the document is a copy that the host made for itself of one that is open.
  virtual bool IsClone() const = 0;

  /// Writes all that the signal carries. To change one value, give the others as they were read.
  virtual void Set(const IDFile& file, bool isClone, const UIDRef& document, UIFlags uiFlags) = 0;
};
