#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>

#include "IDocFontMgr.h"
#include "IFontFamily.h"
#include "InterfacePtr.h"
#include "UIDRef.h"

class DocumentElement;
class IndexedFontArray;

/// What outlives one signal of the host: the open documents, the document in hand, the requests of signal
/// handlers to the idle task, the pending activations; and the way from a used family and style to PostScript
/// names.
///
/// The requests are one-shot: whoever honours one clears it.
///
/// Thread: main. The document list has a lock of its own.
namespace HBIndesignPluginGlobals {

/// The idle task may do its document work for the front document.
extern bool16 ExecuteTimer;
/// A package action is running.
extern bool16 PerformingPackageAction;
/// The idle task should have the host look at the fonts of the system.
extern bool16 RefreshFontStuff;
/// The idle task should check the pending activations.
extern bool16 CheckHostFontAvailability;
/// A link was added; the idle task should process its fonts.
extern bool16 EmbeddedDocJustAdded;

extern int TotalNoOfDuplicateFonts;
extern int DuplicateFontIndex;

// ---- Documents

/// Takes an element into the list, where it stays until DeleteDocumentList().
///
/// \return The element; null, with the element gone, when the list is locked by the calling thread.
DocumentElement* AddDocumentToDocumentList(std::unique_ptr<DocumentElement> element);

/// The first element of that document. Null when there is none. A null reference finds a retired element.
DocumentElement* GetDocumentFromDocumentList(const UIDRef& document);
/// The first element whose document's full path equals the text.
DocumentElement* GetDocumentFromDocumentList(const std::string& path);

/// Elements that aren't retired.
int GetNoOfDocumentsInDocumentList();

/// Retires the document's element: it can no longer be found, but stays in the list.
void DeleteDocumentFromDocumentList(const UIDRef& document);

/// Deletes every element, retired ones too.
void DeleteDocumentList();
void DeleteActivationList();

/// The document in the signal being handled.
const UIDRef& GetUIDRef();
void SetUIDRef(const UIDRef& document);

/// Its path in UTF-8, remembered between the signals before and after its close.
const std::string& GetCurrentDocumentPath();
void SetCurrentDocumentPath(const std::string& path);

// ---- Fonts

/// Has the host take up the fonts of the system as they are now.
void UpdateFontSystem();

/// Adds the PostScript names of one used family and style to a font list. Without a real name it falls back
/// to what the host makes up, then to every regular face of the family, then to the family's name.
///
/// \param family  Null adds nothing.
/// \param style  As the document names it; may be null.
/// \param usedFontsArray  Null adds nothing.
/// \return How many new entries came about; a name that is in the list already doesn't count.
int AddToUsedFontsPSNames(const InterfacePtr<IFontFamily>& family, const PMString* style,
                          CFMutableArrayRef usedFontsArray);

/// The same for one who adds many: the time doesn't grow with the list.
int AddToUsedFontsPSNames(const InterfacePtr<IFontFamily>& family, const PMString* style,
                          IndexedFontArray& usedFontsArray);

/// For a document of the host's version 2: has the document's font manager look the family up by its name.
///
/// \return 1 when it was found, else 0.
int FixID2FontUID(IDataBase* database, const InterfacePtr<IDocFontMgr>& docFontMgr, UID fontUID,
                  const PMString& style);

// ---- Passed on to the one PendingActivationTracker

/// Not retained for the caller.
CFMutableArrayRef GetPendingDeactivatedFonts();
int RemoveConflictingPendingDeactivatedFonts();
int RemoveConflictingPendingActivatedFonts();
bool CheckPendingActivationChanges();

/// Forgets everything: documents, requests, pending activations. At the host's quit.
void CleanUpOnShutdown();

}  // namespace HBIndesignPluginGlobals
