#include "Utilities/SaveFolderDialog.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "GFileSystem.h"
#include "GStringUtils.h"
#include "Memory/CFVector.h"
#include "System/Terminal.h"
#include "Utilities/OperationTrace.h"

namespace {

bool MayAsk() {
  const char* prompt = std::getenv("LOOM_TERMINAL_PROMPT");
  const bool isForbidden = prompt != nullptr && std::string_view(prompt) == "0";
  return !isForbidden && platform::Terminal::Get().CanAsk();
}

std::string Trimmed(const std::string& line) {
  constexpr const char* kBlanks = " \t\r";
  const size_t first = line.find_first_not_of(kBlanks);
  return first == line.npos ? "" : line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

// A document's name can hold what would steer the terminal.
std::string Printable(std::string text) {
  std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  return text;
}

// One component of a path, whatever the document's name holds.
std::string ProposedName(const std::string& documentName, const std::string& pattern) {
  std::string name = Printable(GStringUtils::StringReplace(pattern, "%@", documentName, 1));
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

std::string AbsolutePath(const std::string& answer) {
  const bool isRooted = answer.starts_with('/') || answer.starts_with('~');
  return GFileSystem::OSExpandPath(isRooted ? answer : GFileSystem::OSGetCWD() + "/" + answer);
}

}  // namespace

int ShowSaveFolderDialog(const std::string& documentName, std::string& outPath, CFStringRef title,
                         CFStringRef message, CFStringRef namePattern) {
  OperationTrace trace("ShowSaveFolderDialog", "Entering %s('%s')", "ShowSaveFolderDialog",
                       documentName.c_str());
  int result = -1;
  if (MayAsk()) {
    platform::Terminal& terminal = platform::Terminal::Get();
    const std::string proposed = ProposedName(documentName, ToStdString(namePattern));
    terminal.Write("\n" + Printable(ToStdString(title)) + "\n" + Printable(ToStdString(message)) + "\n");
    std::string line;
    if (terminal.AskLine("[" + proposed + "] ", &line)) {
      const std::string answer = Trimmed(line);
      const std::string path = AbsolutePath(answer.empty() ? proposed : answer);
      if (!path.empty()) {
        outPath = path;
        result = 0;
      }
    }
  }
  trace.Exiting("%s() returning %d", "ShowSaveFolderDialog", result);
  return result;
}
