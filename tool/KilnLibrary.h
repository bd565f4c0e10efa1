#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>
#include <vector>

#include "Memory/RetainPtr.h"
#include "client/LibraryInterface.h"

/// The font library as the command line reaches it: the agent's client library, found and loaded at run time
/// beside Kiln, the way a plug-in finds it.
///
/// Life: Open() finds Kiln, if need be starts it, binds the library and connects; Close() or the end of the
/// object takes the connection back. The library's code stays loaded.
///
/// Thread: main.
class KilnLibrary {
 public:
  /// Whether a Kiln that doesn't run may be started.
  enum class Launch { kNever, kIfNeeded };

  /// One file of an import.
  struct FileResult {
    std::string path;
    std::string status;   ///< "added", "known" or "failed"
    std::string message;  ///< what went wrong, when failed
    std::vector<std::string> fonts;
  };

  /// One font of the library.
  struct Font {
    unsigned long databaseID = 0;
    std::string postScriptName;
    std::string family;
    std::string style;
    std::string kind;
    std::string version;
    bool active = false;
  };

  /// What Kiln says of itself.
  struct Status {
    std::string version;
    std::string processID;
    std::string vaultPath;
    unsigned long fontCount = 0;
    unsigned long activeFontCount = 0;
    unsigned long requestCount = 0;  ///< that Kiln has had since it started
    ErrCode vaultStatus = 0;         ///< 0, or why Kiln has no library
  };

  /// \param outProblem  A sentence for the user when there is no library.
  /// \return Null when Kiln isn't there or its library can't be bound.
  static std::unique_ptr<KilnLibrary> Open(Launch launch, std::string& outProblem);

  /// Whether a Kiln of this session runs.
  static bool IsKilnRunning();

  ~KilnLibrary();
  KilnLibrary(const KilnLibrary&) = delete;
  KilnLibrary& operator=(const KilnLibrary&) = delete;

  /// Adds font files and the font files of folders. `progress` is called as KilnLibraryAddPaths() tells.
  /// \return 0, or the agent's code with `outResults` untouched.
  ErrCode AddPaths(const std::vector<std::string>& paths, KilnProgressProc progress, void* context,
                   std::vector<FileResult>& outResults);

  /// Every font of the library, by family and name; the code as above.
  ErrCode ListFonts(std::vector<Font>& outFonts);

  ErrCode GetStatus(Status& outStatus);

 private:
  explicit KilnLibrary(CFBundleRef bundle);
  bool Bind();

  RetainPtr<CFBundleRef> m_bundle;
  decltype(&::GetPluginFacadeInstance) m_getFacade = nullptr;
  decltype(&::CleanUpOnShutdown) m_cleanUp = nullptr;
  decltype(&::KilnLibraryAddPaths) m_addPaths = nullptr;
  decltype(&::KilnLibraryListFonts) m_listFonts = nullptr;
  decltype(&::KilnLibraryStatus) m_status = nullptr;
};
