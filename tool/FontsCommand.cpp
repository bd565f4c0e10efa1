#include "FontsCommand.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <mutex>
#include <thread>

#include "Complaint.h"
#include "FontsReport.h"

namespace {

enum FontsExitCode : int { kFound = 0, kNoneFound = 1, kTrouble = 2 };

namespace fs = std::filesystem;

bool IsGraphicFile(const fs::path& path) {
  static constexpr std::array kExtensions{".eps", ".epsf", ".ps", ".pdf", ".ai"};
  const std::string extension = path.extension().string();
  return std::any_of(kExtensions.begin(), kExtensions.end(),
                     [&extension](const char* known) { return strcasecmp(extension.c_str(), known) == 0; });
}

// False when a part of the folder couldn't be read; the rest is listed.
bool ListFolder(const std::string& folder, std::vector<std::string>& files) {
  std::error_code error;
  std::vector<std::string> found;
  fs::recursive_directory_iterator entry(folder, error);
  while (!error && entry != fs::recursive_directory_iterator()) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored) && IsGraphicFile(entry->path())) {
      found.push_back(entry->path().string());
    }
    entry.increment(error);
  }
  std::sort(found.begin(), found.end());
  files.insert(files.end(), found.begin(), found.end());
  if (error) Complain(folder + ": " + error.message());
  return !error;
}

/// Reads files on several threads and hands their reports over in order.
class ParallelReading {
 public:
  ParallelReading(const std::vector<std::string>& files, const FontsOptions& options)
      : m_files(files), m_options(options), m_reports(files.size()) {
    const size_t count = std::min<size_t>(files.size(), std::max(1U, std::thread::hardware_concurrency()));
    for (size_t i = 0; i < count; ++i) m_threads.emplace_back([this] { Work(); });
  }

  /// Waits for the report of a file; each is asked for once.
  FontsReport Take(size_t index) {
    std::unique_lock lock(m_mutex);
    m_done.wait(lock, [&] { return m_reports[index].isDone; });
    return std::move(m_reports[index]);
  }

 private:
  void Work() {
    for (size_t index = m_next++; index < m_files.size(); index = m_next++) {
      FontsReport report;
      try {
        report = ReadFontsReport(m_files[index], m_options);
      } catch (const std::exception& error) {
        report = FontsReport();
        report.problem = m_files[index] + ": " + error.what();
      }
      report.isDone = true;
      const std::scoped_lock lock(m_mutex);
      m_reports[index] = std::move(report);
      m_done.notify_all();
    }
  }

  const std::vector<std::string>& m_files;
  const FontsOptions& m_options;
  std::mutex m_mutex;
  std::condition_variable m_done;
  std::vector<FontsReport> m_reports;
  std::atomic<size_t> m_next = 0;
  std::vector<std::jthread> m_threads;  // last, so that they end before the rest goes
};

}  // namespace

int RunFonts(const FontsOptions& options) {
  if (options.files.empty() && options.folder.empty()) {
    Complain("FILE or -r FOLDER is required");
    return kTrouble;
  }
  std::vector<std::string> files = options.files;
  bool trouble = !options.folder.empty() && !ListFolder(options.folder, files);
  bool found = false;
  ParallelReading reading(files, options);
  for (size_t i = 0; i < files.size(); ++i) {
    const FontsReport report = reading.Take(i);
    std::fwrite(report.text.data(), 1, report.text.size(), stdout);
    if (!report.problem.empty()) {
      Complain(report.problem);
      trouble = true;
    }
    found = found || report.fontCount > 0;
  }
  if (trouble) return kTrouble;
  return found ? kFound : kNoneFound;
}
