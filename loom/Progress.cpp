#include "Progress.h"

#include "Dialogs.h"
#include "System/Terminal.h"

namespace {

// As many characters (bytes that begin one) as fit; a line that wraps couldn't be drawn over.
std::string Cut(const std::string& text, int width) {
  int characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool beginsCharacter = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (beginsCharacter && ++characters > width) return text.substr(0, i);
  }
  return text;
}

constexpr const char* kClearLine = "\r\x1b[K";

}  // namespace

void Progress::Show(const std::string& title) {
  m_isShown = true;
  m_title = title;
  Draw(title);
}

void Progress::Update(const std::string& text, int step, int steps) {
  if (!m_isShown) return;
  std::string line = m_title;
  if (steps > 0) line += " [" + std::to_string(step) + "/" + std::to_string(steps) + "]";
  if (!text.empty()) line += (line.empty() ? "" : "  ") + text;
  Draw(line);
}

void Progress::Hide() {
  if (m_isShown && !m_drawn.empty()) platform::Terminal::Get().Write(kClearLine);
  m_isShown = false;
  m_drawn.clear();
}

void Progress::Draw(const std::string& line) {
  platform::Terminal& terminal = platform::Terminal::Get();
  if (!terminal.ShowsProgress()) return;
  const std::string cut = Cut(Dialogs::OnOneLine(line), terminal.Width() - 1);
  if (cut == m_drawn) return;
  m_drawn = cut;
  terminal.Write(kClearLine + cut);
}
