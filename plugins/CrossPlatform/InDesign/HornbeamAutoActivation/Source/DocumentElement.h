#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>
#include <vector>

#include "FontListElement.h"
#include "GMutex.h"
#include "Memory/RetainPtr.h"
#include "PMString.h"
#include "UIDRef.h"

/// One open document: which fonts it uses, and how they get activated.
///
/// Life: made when the host creates or opens a document; retired at its close, when its reference becomes the
/// null reference; deleted with the document list, after the last document has closed. What the fonts
/// themselves go through is the tracker's.
///
/// Where a step finds nothing, the later ones run with empty lists: no failure here reaches the host.
///
/// Thread: main, apart from the font list, which has a lock.
class DocumentElement {
 public:
  DocumentElement();
  DocumentElement(const DocumentElement&) = delete;
  DocumentElement& operator=(const DocumentElement&) = delete;
  virtual ~DocumentElement();

  const UIDRef& GetUIDRef() const { return mDocUIDRef; }
  void SetUIDRef(const UIDRef& document) { mDocUIDRef = document; }

  /// As the host told it at the last GetFontsInDocument().
  const PMString& GetDocumentName() const { return mDocumentName; }
  void SetDocumentName(const PMString& name) { mDocumentName = name; }

  /// What the tracker knows this document by: its name, "/" and the activation identifier. Built with the
  /// name held at the first call; it does not follow a later change of the name.
  const std::string& GetDocumentIdentifier();

  /// A UUID of this opening.
  const std::string& GetActivationIdentifier() const { return mActivationIdentifier; }

  /// A font record for each font that the document's text uses, in the host's order. Empty when the host
  /// doesn't give what is needed.
  RetainPtr<CFMutableArrayRef> GetFontsInDocument();

  /// Finds the document's fonts and has the font manager activate them; the one place where that happens.
  /// Fonts without a match go to the resolve dialog when the user has asked for it.
  void ActivateFontList();

  /// Takes out the fonts that the host brings itself.
  ///
  /// \param problemFonts  Font records. May be null.
  /// \param bSkipHostQuery  False also takes out fonts that the host has active at the moment.
  void FilterOutInDesignOnlyFonts(CFMutableArrayRef problemFonts, bool bSkipHostQuery);

  /// Notes at the tracker the fonts that are left to the host's own missing-fonts dialog.
  ///
  /// \return 0, or -1 for null or without LoomInterface.
  int AddProblemFontsToUnresolvedFonts(CFMutableArrayRef problemFonts);

  /// How many fonts the document needs: those of the last GetFontsInDocument(), or those of its stored data
  /// when these are more.
  int CountFontsUsedByDocument();

  /// Keeps the document's present fonts for the font manager, which gets them after the save.
  void CacheFontsInDocument();
  /// Not retained for the caller; null before the first CacheFontsInDocument().
  CFArrayRef GetCachedFontsInDocument() const { return mCachedFontsInDocument.get(); }

  /// Adds a name to a font list, cut to what a PostScript name can be.
  ///
  /// \param bAllowDuplicates  True adds it even if it is there already.
  /// \return Whether it was added.
  bool AddFontToArray(const PMString& name, CFMutableArrayRef fonts, bool bAllowDuplicates);

  /// Whether all of the document's fonts may be exported.
  void SetCanExportFontsForDocument(bool canExport) { mCanExportFonts = canExport; }
  bool CanExportFontsForDocument() const { return mCanExportFonts; }

  /// Has the host make its font menus anew for this document.
  void RebuildFontMenus();

  void DeleteFontList();
  void ReleaseMemoryAcquiredByDocument();

  /// The data that finds the document's very fonts again elsewhere.
  ///
  /// \param workgroupID  Where to look them up; -2 for all workgroups.
  /// \param bGetAllFontInfo  Keep keys that aren't stored in documents.
  /// \param allFound  Set to whether every font was found.
  /// \return Font records; null without LoomInterface and when the font manager has gone.
  RetainPtr<CFMutableArrayRef> CollectGlyphMarkInfoForDocument(long workgroupID, bool bGetAllFontInfo,
                                                               bool& allFound);

  /// Collects that data for a save.
  void CollectGlyphMarkInfoForWrite();

  /// Not retained for the caller; null while there is none.
  CFArrayRef GetGlyphMarkInfo() const { return mDocGlyphMarkData.get(); }

  /// Lists that are freed with the last document.
  static std::vector<std::string> FontPathList;
  static std::vector<std::string> FontFaceList;
  static std::vector<unsigned int> DuplicateFontIDListForSingleFont;
  static std::vector<int> DuplicateFontIndexList;

 private:
  void ActivateFonts(const std::string& path, CFMutableArrayRef fonts, CFMutableArrayRef matchedFontData,
                     CFMutableArrayRef problemFontData);
  int ResolveProblemFonts(CFMutableArrayRef problemFontData);
  void TakeCanExportFlagFrom(CFArrayRef fonts);

  PMString mDocumentName;
  std::vector<std::unique_ptr<FontListElement>> mFontList;
  GMutex mFontListMutex;
  UIDRef mDocUIDRef;
  RetainPtr<CFMutableArrayRef> mDocGlyphMarkData;       ///< Of the document itself.
  RetainPtr<CFMutableArrayRef> mCachedFontsInDocument;  ///< Fonts at the last CacheFontsInDocument().
  unsigned int mNumberOfFontsUsedByDocument = 0;
  std::string mActivationIdentifier;
  std::string mDocumentIdentifier;
  bool mCanExportFonts = false;
};
