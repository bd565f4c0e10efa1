#pragma once

#include <string>
#include <vector>

#include "KilnConnection.h"

/// What Kiln says of its library as a whole. Every operation gives 0 or the agent's code, with its output
/// untouched then. The connection must outlive the object. Thread: main.
class KilnLibrary {
 public:
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
    bool missing = false;  ///< its file has gone
    bool damaged = false;  ///< its file isn't what it was
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

  explicit KilnLibrary(const KilnConnection& kiln) : m_kiln(kiln) {}

  /// Adds font files and the font files of folders. `progress` is called as KilnLibraryAddPaths() tells.
  ErrCode AddPaths(unsigned int workgroupID, const std::vector<std::string>& paths, KilnProgressProc progress,
                   void* context, std::vector<FileResult>& outResults) const;

  /// Every font of the library, by family and name.
  ErrCode ListFonts(std::vector<Font>& outFonts) const;

  ErrCode GetStatus(Status& outStatus) const;

 private:
  const KilnConnection& m_kiln;
};
