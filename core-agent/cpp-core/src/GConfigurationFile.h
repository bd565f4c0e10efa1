#pragma once

#include <map>
#include <string>

#include "GFileSystemSpec.h"

/// Reads the font manager's configuration files: "key = value" lines.
///
/// Lines end in CR, LF or both. From the first "#" of a line on, wherever it stands, all is comment. Key and
/// value are stripped of whitespace at both ends; the key is lowered in case, the value is kept and may hold
/// further "=". There is no quoting. A line without "=" or with an empty key is logged and ignored; it never
/// fails the parse.
class GConfigurationFile {
 public:
  GConfigurationFile() = delete;

  /// \param outMap  Receives the entries; a key given twice keeps the last value, entries already there stay.
  /// \return the code of GFile::Open() or of the read, with `outMap` untouched.
  static TErrCode ParseFile(const GFileSystemSpec& spec, std::map<std::string, std::string>& outMap);

  /// \return 0; no text is an error.
  static TErrCode ParseString(const std::string& text, std::map<std::string, std::string>& outMap);

  static char GetKeyValueDelimiter() { return '='; }
};
