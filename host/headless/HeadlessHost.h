#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class PlugIn;

namespace headless {

class HostServices;

/// The host without a user interface: opens documents, loads plug-ins and lets them work as in the host with
/// windows, and tells what its windows would have shown.
///
/// Life:
///   1. Made: the session is there; no plug-in is.
///   2. LoadPlugIns() or RegisterPlugIn(), any number of times.
///   3. Start(): the plug-ins' start-up services have run. Documents may be opened, saved and closed.
///   4. Shutdown(), or the end of the object: what is still open is closed without saving, the plug-ins'
///      shutdown services have run, and the plug-ins have lost the session. Their code stays loaded.
///
/// Thread: one, which counts as the host's main thread; it is the one that makes the object. One host a
/// process at a time.
class HeadlessHost {
 public:
  /// Names an open document; 0 names none. No number is given twice.
  using DocumentID = std::uint32_t;

  /// A pair of family and style that a document's text is set in.
  struct UsedFont {
    std::string family;
    std::string style;
    /// As the document's font table tells it, else as the installed fonts do. When neither knows it, a
    /// made-up one: family, "-" and style, without white space.
    std::string postScriptName;
    bool hasRealName = false;  ///< False for a made-up name.
    bool available = false;    ///< Whether the host has the font at the moment of the question.
  };

  /// What plug-ins have reported for a document (IFontActivityReport), each name once, in the order reported.
  struct FontActivity {
    struct MatchedFont {
      std::string postScriptName;
      std::uint32_t databaseID = 0;
      bool wasActive = false;  ///< Before the document asked for it.
    };
    std::vector<MatchedFont> matched;
    std::vector<std::string> problems;
    std::vector<std::string> deactivated;
  };

  /// The alert about missing fonts and links that the host would show after an open.
  struct OpenAlert {
    /// A plug-in took the alert away in its answer to the after-open signal, the last before it would show.
    bool suppressed = false;
    std::vector<UsedFont> missingFonts;
    std::vector<std::string> missingLinks;    ///< Paths, or URIs where there is no path.
    std::vector<std::string> outOfDateLinks;  ///< Likewise.

    /// Whether the host with windows would have shown it.
    bool IsShown() const {
      return !suppressed && !(missingFonts.empty() && missingLinks.empty() && outOfDateLinks.empty());
    }
  };

  HeadlessHost();
  ~HeadlessHost();
  HeadlessHost(const HeadlessHost&) = delete;
  HeadlessHost& operator=(const HeadlessHost&) = delete;

  /// Loads every "*.InDesignPlugin" bundle of a folder, in the order of their names. One that can't be loaded
  /// is left out.
  ///
  /// \param folder  An absolute path; "" for "Contents/Plug-Ins" of the running program's own bundle.
  /// \param errors  Receives a sentence for each that was left out.
  /// \return How many were loaded.
  int LoadPlugIns(const std::string& folder, std::vector<std::string>& errors);

  /// Takes in a plug-in whose code is here already.
  ///
  /// \param plugIn  Outlives the host.
  void RegisterPlugIn(PlugIn& plugIn);

  /// Calls the start-up services, in the order in which they were registered. Once.
  void Start();

  /// Opens a document: before-open, during-open and after-open signal, then the alert. It becomes the front
  /// document.
  ///
  /// \param path  An IDML package. Opening one that is open already opens a second document of that name.
  /// \param error  On failure one sentence that begins with the path; nothing has then been signalled.
  /// \return 0 on failure.
  DocumentID Open(const std::string& path, std::string& error);

  /// Stores the document's attributes in its file: before-save signal, write, after-save signal. The
  /// after-save signal also comes when the write fails.
  ///
  /// \param error  On failure one sentence; the file is then as it was.
  /// \return false on failure or for a document that isn't open.
  bool Save(DocumentID document, std::string& error);

  /// Closes a document without saving: before-close signal, the document goes, after-close signal. Nothing
  /// for one that isn't open.
  void Close(DocumentID document);

  /// The open documents in the order in which they were opened.
  std::vector<DocumentID> OpenDocuments() const;

  /// The file's name without folders; "" for one that isn't open.
  std::string DocumentName(DocumentID document) const;

  /// The document's fonts in the order found; composite fonts stand as the fonts that they are made of. Empty
  /// for one that isn't open.
  std::vector<UsedFont> UsedFonts(DocumentID document) const;

  /// The alert as it was decided at the open. Like the next, also good after the close.
  OpenAlert AlertAtOpen(DocumentID document) const;

  /// What plug-ins have reported so far; by the end of Close() also what the close gave back.
  FontActivity Activity(DocumentID document) const;

  /// Lets the main thread's run loop turn: idle tasks whose time has come, and timers.
  ///
  /// \param milliseconds  For how long; 0 does what is due and returns.
  void RunIdle(std::uint32_t milliseconds);

  /// See the fourth stage above. May be called twice.
  void Shutdown();

 private:
  std::unique_ptr<HostServices> m_pServices;
  bool m_bStarted = false;
  bool m_bShutDown = false;
};

}  // namespace headless
