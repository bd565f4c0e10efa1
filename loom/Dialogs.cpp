#include "Dialogs.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>

#include "GStringUtils.h"
#include "System/Terminal.h"

namespace {

constexpr std::size_t kMaxNames = 20;

// Control characters could steer the terminal: those of ASCII, and U+0080 to U+009F in UTF-8.
std::string Printable(const std::string& text, bool keepLines) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    if (byte == '\n' && keepLines) {
      result += '\n';
    } else if (byte == '\n' || byte == '\t') {
      result += ' ';
    } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
      ++i;
    } else if (byte >= 0x20 && byte != 0x7F) {
      result += text[i];
    }
  }
  return result;
}

void Write(const std::string& text) {
  platform::Terminal::Get().Write(text);
}

std::string BoxText(const std::string& header, const std::string& message) {
  return "\n" + (header.empty() ? header : Printable(header, false) + "\n") + Printable(message, true) + "\n";
}

// The one line that stands for a box.
void SayBox(const std::string& header, const std::string& message, const std::string& answer) {
  const std::string head = header.empty() ? header : header + ": ";
  Dialogs::Say(head + message + (answer.empty() ? answer : " [no terminal; answered: " + answer + "]"));
}

std::optional<std::size_t> ParseIndex(const std::string& text, std::size_t count) {
  std::size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end || number < 1 || number > count) return std::nullopt;
  return number - 1;
}

std::string Answer(const std::string& line) {
  return GStringUtils::StripPrecedingWhitespace(GStringUtils::StripTrailingWhitespace(line));
}

}  // namespace

std::string Dialogs::OnOneLine(const std::string& text) {
  return Printable(text, false);
}

bool Dialogs::CanAsk() {
  const char* prompt = std::getenv("LOOM_TERMINAL_PROMPT");
  const bool isForbidden = prompt != nullptr && std::string_view(prompt) == "0";
  return !isForbidden && platform::Terminal::Get().CanAsk();
}

void Dialogs::Say(const std::string& sentence) {
  Write("hornbeam: " + OnOneLine(sentence) + "\n");
}

void Dialogs::Notice(const std::string& header, const std::string& message) {
  if (CanAsk()) {
    Write(BoxText(header, message));
  } else {
    SayBox(header, message, "");
  }
}

bool Dialogs::Ask(const std::string& header, const std::string& message) {
  if (!CanAsk()) {
    SayBox(header, message, "No");
    return false;
  }
  Write(BoxText(header, message));
  std::string line;
  while (platform::Terminal::Get().AskLine("[y/N] ", &line)) {
    const std::string answer = GStringUtils::OSToLowerCase(Answer(line));
    if (answer == "y" || answer == "yes") return true;
    if (answer.empty() || answer == "n" || answer == "no") return false;
  }
  return false;
}

std::optional<std::string> Dialogs::AskForText(const std::string& title, const std::string& prompt,
                                               const std::string& proposed) {
  if (!CanAsk()) {
    SayBox(title, prompt, proposed);
    return proposed;
  }
  Write(BoxText("", title));
  std::string line;
  const std::string question =
      Printable(prompt, false) + (proposed.empty() ? " " : " [" + Printable(proposed, false) + "] ");
  if (!platform::Terminal::Get().AskLine(question, &line)) return std::nullopt;
  const std::string answer = Answer(line);
  return answer.empty() ? proposed : answer;
}

Dialogs::Choice Dialogs::Choose(const std::string& title, const std::vector<std::string>& options,
                                const std::string& prompt) {
  std::string text = BoxText("", title);
  for (std::size_t i = 0; i < options.size(); ++i) {
    text += "  " + std::to_string(i + 1) + ") " + Printable(options[i], false) + "\n";
  }
  Write(text);
  std::string line;
  while (platform::Terminal::Get().AskLine(Printable(prompt, false) + " ", &line)) {
    const std::string answer = Answer(line);
    if (answer.empty()) return {};
    if (const auto index = ParseIndex(answer, options.size())) return {false, index};
  }
  return {true, std::nullopt};
}

void Dialogs::NoticeWithNames(const std::string& header, const std::string& message,
                              const std::vector<std::string>& names) {
  const char* const separator = CanAsk() ? "\n  " : " ";
  std::string text = message;
  for (std::size_t i = 0; i < std::min(names.size(), kMaxNames); ++i) text += separator + names[i];
  if (names.size() > kMaxNames) {
    text += separator + ("and " + std::to_string(names.size() - kMaxNames) + " more");
  }
  Notice(header, text);
}
