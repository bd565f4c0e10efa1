#include "OpenCommand.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "Complaint.h"
#include "ExitCodes.h"
#include "KilnLibrary.h"
#include "OpenReport.h"
#include "ProgressLine.h"
#include "UserPause.h"
#include "headless/HeadlessHost.h"

namespace {

using Host = headless::HeadlessHost;

struct OpenedDocument {
  Host::DocumentID id;
  OpenReport report;
};

// The preferences of this run, which the UI framework reads over the stored ones.
void SetRunPreferences(const OpenOptions& options) {
  std::string preferences;
  if (const char* given = std::getenv("LOOM_PREFERENCES")) preferences = given;
  if (options.giveBack) preferences += ";CloseFontsOnDocClose=1";
  if (options.keepOpen) preferences += ";CloseFontsOnDocClose=0;CloseFontsOnHostAppQuit=0";
  if (!preferences.empty()) setenv("LOOM_PREFERENCES", preferences.c_str(), 1);
}

bool StartHost(Host& host) {
  std::vector<std::string> errors;
  const int loaded = host.LoadPlugIns("", errors);
  for (const std::string& error : errors) Complain(error);
  host.Start();
  return loaded > 0 && errors.empty();
}

class OpenRun {
 public:
  explicit OpenRun(const OpenOptions& options) : m_options(options) {}

  int Run() {
    SetRunPreferences(m_options);
    if (!StartHost(m_host)) m_exitCode = kExitFailed;
    OpenAll();
    if (m_options.wait) WaitForUser();
    if (m_options.save) SaveAll();
    CloseAll();
    m_host.Shutdown();
    ComplainIfKilnDied();
    ComplainIfKilnIsStuck();
    return m_exitCode;
  }

 private:
  void OpenAll() {
    ProgressLine progress("Opening");
    for (const std::string& path : m_options.documents) {
      if (m_pause.IsInterrupted()) {
        Complain("interrupted; closing what is open");
        m_exitCode = kExitFailed;
        return;
      }
      std::string error;
      const Host::DocumentID id = m_host.Open(path, error);
      if (id == 0) {
        Complain(error);
        m_exitCode = kExitFailed;
        continue;
      }
      m_documents.push_back({id, OpenReport(m_host, id, path)});
      if (!m_options.json) m_documents.back().report.PrintOpened();
      if (m_options.documents.size() > 1) progress.Show(m_documents.size(), m_options.documents.size());
    }
  }

  void WaitForUser() {
    std::fflush(stdout);
    if (isatty(STDIN_FILENO) == 1) std::fputs("Press Enter to close.\n", stderr);
    m_pause.Wait([this] { m_host.RunIdle(50); });
  }

  void SaveAll() {
    for (const OpenedDocument& document : m_documents) {
      std::string error;
      if (m_host.Save(document.id, error)) continue;
      Complain(error);
      m_exitCode = kExitFailed;
    }
  }

  // With --keep-open the documents end with the host, which then leaves their fonts alone.
  void CloseAll() {
    for (OpenedDocument& document : m_documents) {
      if (!m_options.keepOpen) {
        m_host.Close(document.id);
        document.report.SetClosed(m_host, document.id);
        if (!m_options.json) document.report.PrintClosed();
      }
      if (m_options.json) document.report.PrintJson();
    }
  }

  // A Kiln that was killed can't be asked to give anything back; it does so itself at its next start, which
  // finds that this process has gone.
  void ComplainIfKilnDied() const {
    const bool activated =
        std::any_of(m_documents.begin(), m_documents.end(),
                    [](const OpenedDocument& document) { return document.report.HasActivated(); });
    if (!activated || m_options.keepOpen || KilnConnection::IsKilnRunning()) return;
    Complain("Kiln has ended unexpectedly; it gives the fonts back when it starts again");
  }

  // A Kiln that runs and was to give fonts back, but gave back none, may be stopped or at its end.
  void ComplainIfKilnIsStuck() const {
    const auto activated = [](const OpenedDocument& document) { return document.report.HasActivated(); };
    const auto gaveBack = [](const OpenedDocument& document) { return document.report.HasGivenBack(); };
    if (!m_options.giveBack || m_options.keepOpen) return;
    if (std::none_of(m_documents.begin(), m_documents.end(), activated)) return;
    if (std::any_of(m_documents.begin(), m_documents.end(), gaveBack)) return;
    if (!KilnConnection::IsKilnRunning()) return;
    const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open(KilnConnection::Launch::kNever);
    KilnLibrary::Status status;
    if (!kiln) return;
    if (const ErrCode code = KilnLibrary(*kiln).GetStatus(status)) {
      ComplainOfCode("the fonts couldn't be given back, and stay active until Kiln starts again", code);
    }
  }

  const OpenOptions& m_options;
  UserPause m_pause;
  Host m_host;
  std::vector<OpenedDocument> m_documents;
  int m_exitCode = kExitOk;
};

}  // namespace

int RunOpen(const OpenOptions& options) {
  return OpenRun(options).Run();
}
