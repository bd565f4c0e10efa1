#pragma once

#include <string>
#include <vector>

struct OpenOptions {
  std::vector<std::string> documents;
  bool json = false;
  bool giveBack = false;  ///< turns the preference "CloseFontsOnDocClose" on for this run
  bool keepOpen = false;  ///< leaves the fonts active when the run ends
  bool wait = false;
  bool save = false;
};

/// `hornbeam open`: starts the headless host, opens all documents, reports, closes them in the same order,
/// quits. A document that can't be opened is named on standard error; the others are still processed.
///
/// \return An ExitCode.
int RunOpen(const OpenOptions& options);
