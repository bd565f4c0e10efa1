#include "ProgressLine.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

ProgressLine::ProgressLine(std::string title)
    : m_title(std::move(title)), m_visible(isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
  if (m_shown) std::fputs("\r\033[K", stderr);
}

void ProgressLine::Show(unsigned long done, unsigned long total) {
  if (!m_visible) return;
  std::fprintf(stderr, "\r%s %lu of %lu\033[K", m_title.c_str(), done, total);
  std::fflush(stderr);
  m_shown = true;
}

void ProgressLine::Report(unsigned long done, unsigned long total, const char*, void* progressLine) {
  static_cast<ProgressLine*>(progressLine)->Show(done, total);
}
