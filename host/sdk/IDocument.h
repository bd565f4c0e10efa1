#pragma once

#include "IPMUnknown.h"
#include "PMString.h"
#include "UIDRef.h"

/// A document. The same object has IUsedFontList and IDocumentFontUsage.
class IDocument : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IDOCUMENT;

  /// The name as its window shows it: the file's, with its extension, or a made-up one before the first save.
  virtual PMString GetName() const = 0;

  /// Whether there are changes since the last save.
  virtual bool IsModified() const = 0;

  /// The store of its objects; null for a document that is being taken down.
  virtual IDataBase* GetDataBase() const = 0;

  /// Whether it came from version 2 of the host, so that its font families have to be looked up by name.
  virtual bool IsConvertedFromID2() const = 0;

  /// The object that holds what the document defines for itself; it has IDocFontMgr.
  virtual UIDRef GetDocWorkSpace() const = 0;
};
