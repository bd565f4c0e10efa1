#pragma once

#include <cstddef>
#include <string>

/// A temporary file without a name in any folder: it goes with the object, or with the process.
///
/// Thread: one.
class UnlinkedFile {
 public:
  /// Makes the file, readable by its user alone, in the folder of the environment variable TMPDIR or in /tmp.
  UnlinkedFile();
  UnlinkedFile(const UnlinkedFile&) = delete;
  UnlinkedFile& operator=(const UnlinkedFile&) = delete;
  ~UnlinkedFile();

  bool IsOpen() const { return m_descriptor >= 0; }
  /// The name that the file was made with; for messages.
  const std::string& Name() const { return m_name; }
  /// A path by which this process can open it, while the object lives.
  std::string Path() const;

  /// Appends bytes. False when not all of them were written.
  bool Write(const char* bytes, size_t count);
  size_t Size() const { return m_size; }

 private:
  std::string m_name;
  int m_descriptor = -1;
  size_t m_size = 0;
};
