#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Activation/Vocabulary/SDocumentRecord.h"
#include "Activation/Vocabulary/SFontRecord.h"
#include "GMutex.h"

class FontManagerInterface;
class LoomInterface;

/// Counts which open document caused which font to be active, so that a font goes away with the last document
/// that needs it, and only if this plug-in brought it in.
///
/// Life of one font:
///   1. Absent.
///   2. Open: RegisterFontWithDocument() has run more often than the closes have taken away.
///   3. Idle: counted down to 0 by a close that was told not to deactivate; still active at the agent.
/// CloseAllFonts() takes every font back to 1. Nothing is kept on disk.
///
/// A document is known by its identifier, its name and a UUID of this opening, so that a reopened document is
/// another one. Whether a font may be given back at all is decided at its first registration: one that was
/// active before is never deactivated here.
///
/// Thread: any; the counting operations take the one mutex. The close operations hold it across their calls
/// to the font manager. Such a call can run the host's event loop, and what comes back in on the same thread
/// then does not get the lock: it changes nothing and says so by its result.
class FontActivationTracker {
 public:
  /// \param loomInterface  The shared one. Not owned; may be null.
  explicit FontActivationTracker(LoomInterface* loomInterface);

  FontActivationTracker(const FontActivationTracker&) = delete;
  FontActivationTracker& operator=(const FontActivationTracker&) = delete;

  /// Releases what is still held. Doesn't call the font manager.
  virtual ~FontActivationTracker();

  /// A fresh UUID in its canonical text, 36 characters. Should the platform give none, one arbitrary
  /// character.
  static std::string GenerateUniqueIdentifier();

  /// Writes the text of a fresh UUID into a buffer; false when there is none.
  using UUIDTextProc = bool (*)(char* buffer, CFIndex size);

  /// For tests: another source of UUIDs for GenerateUniqueIdentifier(); null for the platform's.
  static void SetUUIDTextProcForTesting(UUIDTextProc proc);

  /// Has the font manager match and activate a document's fonts, and registers every matched one.
  ///
  /// \param identifier  The document's activation identity. When it is empty, each font is registered with
  ///        the sub-documents that its record names.
  /// \param documentPath  UTF-8.
  /// \param matchedFontData  Receives the matched records. The caller's.
  /// \param problemFontData  Receives the records that need a decision. The caller's.
  /// \param fonts  The fonts asked for. Not owned, may be null.
  /// \return kErrorHornbeamNotRunning without a connected font manager, with nothing done; 0 with nothing
  ///         done when the font manager is no agent; otherwise the font manager's code, and the fonts that it
  ///         matched are registered whatever the code is.
  /// Whatever the font manager throws is passed on.
  int ActivateDocumentFonts(const std::string& identifier, const std::string& documentPath,
                            CFMutableArrayRef& matchedFontData, CFMutableArrayRef& problemFontData,
                            CFMutableArrayRef fonts);

  /// Activates the fonts that the user chose for problem fonts, and registers those that became active.
  ///
  /// \param fonts  Chosen font records, each with a database ID. Not owned.
  /// \param fontCount  Receives the number of fonts activated; left as it is when nothing was asked.
  /// \return As ActivateDocumentFonts().
  int ActivateFontsByID(const std::string& identifier, CFMutableArrayRef fonts, int& fontCount);

  /// Counts one use of a font by a document. Record, name, bAlreadyActive and deactivationData count at the
  /// first registration only; the same font registered twice for one identifier counts twice.
  ///
  /// Record and name are retained; deactivationData is handed back to DeactivateFont() and never owned. Does
  /// nothing when the lock is held by the calling thread.
  void RegisterFontWithDocument(CFDictionaryRef fontRecord, CFStringRef postscriptName, uint32_t fontID,
                                bool bAlreadyActive, const std::string& identifier, void* deactivationData);

  /// How many registrations the document holds open on fonts that this plug-in brought in.
  ///
  /// \return 0 for an unknown identifier, and when the lock is held by the calling thread.
  unsigned int CountFontsOpenedForIdentifier(const std::string& identifier);

  /// Gives back the fonts of one document.
  ///
  /// A font is deactivated when its count comes to 0, the client still holds its activation at the agent, and
  /// it was not active before.
  ///
  /// \param identifier  As given to RegisterFontWithDocument().
  /// \param bDeactivateClosedFonts  False counts down but leaves every font active.
  /// \param fontsDeactivated  Receives the records that were really deactivated. May be null. Not owned.
  /// \return 0, also for an identifier that was never registered; kErrorHornbeamNotRunning without a
  ///         connected font manager, and kMutexDeadlockErr when the lock is held by the calling thread, both
  ///         with nothing changed; otherwise the code of the deactivation, and the identifier is forgotten
  ///         all the same.
  /// Whatever the font manager throws is passed on, with the identifier forgotten.
  int CloseAllFontsForIdentifier(const std::string& identifier, bool bDeactivateClosedFonts,
                                 CFMutableArrayRef fontsDeactivated);

  /// Gives back every font at the host's quit; counts play no part. Afterwards no font is registered.
  ///
  /// \param bDeactivateClosedFonts  False leaves every font active.
  /// \return As CloseAllFontsForIdentifier().
  int CloseAllFonts(bool bDeactivateClosedFonts);

  /// Notes a font that stayed unresolved for a document. Kept for the tracker's life. Takes no lock.
  void AddUnresolvedFont(const std::string& identifier, const std::string& postscriptName);

 private:
  using ClientStates = std::map<unsigned int, bool>;

  void RegisterMatchedRecords(CFArrayRef records, const std::string& identifier);
  void RegisterMatchedRecord(CFDictionaryRef record, CFIndex index, const std::string& identifier);
  int CloseFontsAtAgent(FontManagerInterface& manager, const std::vector<uint32_t>& fontIDs,
                        bool bDeactivateClosedFonts, const ClientStates& states,
                        CFMutableArrayRef fontsDeactivated);
  int CloseFontsOneByOne(FontManagerInterface& manager, const std::vector<uint32_t>& fontIDs,
                         bool bDeactivateClosedFonts, CFMutableArrayRef fontsDeactivated);
  int CloseEveryFontAtAgent(FontManagerInterface& manager, bool bDeactivateClosedFonts,
                            const ClientStates& states);
  int CloseEveryFontOneByOne(FontManagerInterface& manager, bool bDeactivateClosedFonts);
  void ReleaseAllFonts();

  GMutex m_Mutex;
  std::map<uint32_t, SFontRecord> m_mFonts;                            ///< Registered and not closed yet.
  std::map<std::string, SDocumentRecord> m_mDocuments;                 ///< Identifiers with fonts registered.
  std::map<std::string, std::vector<std::string>> m_mUnresolvedFonts;  ///< PostScript names; only grows.
  LoomInterface* m_pLoomInterface;
};
