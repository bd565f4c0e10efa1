#pragma once

#include <string>

#include "headless/HeadlessHost.h"

/// What `hornbeam open` says of one document, as lines for people or as one JSON object.
class OpenReport {
 public:
  /// Takes in what there is to say after the open. `path` as the user gave it.
  OpenReport(const headless::HeadlessHost& host, headless::HeadlessHost::DocumentID document,
             std::string path);

  /// Takes in what the close gave back.
  void SetClosed(const headless::HeadlessHost& host, headless::HeadlessHost::DocumentID document);

  /// Whether the document brought in any font.
  bool HasActivated() const;

  /// Whether its close gave any back.
  bool HasGivenBack() const { return !m_activity.deactivated.empty(); }

  void PrintOpened() const;
  void PrintClosed() const;
  /// The line of `--json`, all in one.
  void PrintJson() const;

 private:
  using Host = headless::HeadlessHost;

  void PrintFont(const Host::UsedFont& font) const;
  // A font without a real name is looked for under more than one.
  void PrintOtherProblems() const;
  void PrintAlert() const;

  const std::string m_path;
  const std::vector<Host::UsedFont> m_usedFonts;
  const Host::OpenAlert m_alert;
  Host::FontActivity m_activity;
};
