#pragma once

#include <string>

struct EpsWriteOptions {
  std::string file;
  std::string records;  ///< an XML property list: an array of font records
};

/// `hornbeam eps-write`: writes the records into an EPS file as its block of "%%DocumentFontSpecs" comments,
/// reads the file again and says of each record whether it came back.
///
/// \return An ExitCode; kExitFailed when nothing was written or a record or value didn't come back.
int RunEpsWrite(const EpsWriteOptions& options);
