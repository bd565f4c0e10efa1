#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <sys/types.h>

#include <ctime>
#include <functional>
#include <string>

#include "Memory/RetainPtr.h"

/// The file that holds the preferences: an XML property list with a dictionary at its root.
///
/// It is replaced whole (temporary file, fsync, rename), so that a reader sees the old or the new one and a
/// crash loses neither. Changes are made under a lock beside it, on what the file holds at that moment, so
/// that two processes don't undo each other's. A file that is no such list is never overwritten: it is moved
/// aside under a name with the date. Keys and values that nobody here knows are kept.
///
/// Thread: one.
class PreferencesFile {
 public:
  /// Tells one state of the file from another without reading it.
  struct Stamp {
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec changed{};
    bool operator==(const Stamp& other) const;
  };

  /// Takes a sentence for the user.
  using Reporter = std::function<void(const std::string& sentence)>;

  /// \param path  The folder is made when something is first stored.
  PreferencesFile(std::string path, Reporter report);

  const std::string& GetPath() const { return m_path; }

  Stamp GetStamp() const;

  /// What the file holds; empty when there is none. A damaged file is moved aside first, which is reported;
  /// one that can't be opened is reported and left alone.
  RetainPtr<CFDictionaryRef> Read();

  /// Changes one value, or removes it with a null one.
  ///
  /// \return False, with the reason reported and the file as it was, when that can't be done.
  bool Change(CFStringRef key, CFTypeRef value);

 private:
  struct Contents;
  Contents Load() const;
  bool MoveAside(const std::string& reason);
  bool Store(CFDictionaryRef values);
  bool Fail(const std::string& what, int error);

  std::string m_path;
  Reporter m_report;
};
