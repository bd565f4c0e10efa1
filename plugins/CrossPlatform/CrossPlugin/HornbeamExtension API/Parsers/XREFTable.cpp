#include "Parsers/XREFTable.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <queue>

namespace {

constexpr size_t kMaxEntries = size_t{1} << 22;
constexpr size_t kMaxSections = size_t{1} << 17;
constexpr int64_t kMaxOffset = (int64_t{1} << 47) - 1;
constexpr int64_t kMaxGeneration = 65535;

}  // namespace

void XREFTable::BeginSection(int64_t firstObjectNumber) {
  m_nPendingSection = firstObjectNumber;
  m_bSectionTakesEntries = false;
}

void XREFTable::AddEntry(int64_t offset, int64_t generation, bool bInUse) {
  if (m_nPendingSection >= 0) {
    // Object numbers are 32-bit: what lies above can't be asked for.
    m_bSectionTakesEntries =
        m_sections.size() < kMaxSections && m_nPendingSection <= std::numeric_limits<int32_t>::max();
    if (m_bSectionTakesEntries) {
      m_sections.push_back(
          {static_cast<int32_t>(m_nPendingSection), static_cast<uint32_t>(m_entries.size()), 0});
    }
    m_nPendingSection = -1;
  }
  if (!m_bSectionTakesEntries || m_entries.size() >= kMaxEntries) return;
  XREFSubsection entry{};
  entry.nOffset = static_cast<uint64_t>(offset <= kMaxOffset ? offset : 0) & kMaxOffset;
  entry.nGenerationNumber = static_cast<uint16_t>(std::min(generation, kMaxGeneration));
  entry.bInUse = bInUse;
  m_entries.push_back(entry);
  ++m_sections.back().nCount;
  m_ranges.clear();
}

std::optional<size_t> XREFTable::Find(int32_t objectNumber) {
  if (m_ranges.empty()) BuildRanges();
  const auto behind =
      std::upper_bound(m_ranges.begin(), m_ranges.end(), objectNumber,
                       [](int32_t number, const Range& range) { return number < range.nBegin; });
  if (behind == m_ranges.begin()) return std::nullopt;
  const XREFSection& section = m_sections[std::prev(behind)->nSection];
  if (objectNumber >= section.End()) return std::nullopt;
  return section.nFirstEntry + static_cast<size_t>(objectNumber - section.nFirstObjectNumber);
}

// Walks along the object numbers with the sections that cover the present one at hand, the first read on top.
void XREFTable::BuildRanges() {
  std::vector<uint32_t> byNumber(m_sections.size());
  std::iota(byNumber.begin(), byNumber.end(), 0U);
  std::sort(byNumber.begin(), byNumber.end(), [this](uint32_t a, uint32_t b) {
    return m_sections[a].nFirstObjectNumber < m_sections[b].nFirstObjectNumber;
  });

  std::priority_queue<uint32_t, std::vector<uint32_t>, std::greater<>> covering;
  size_t next = 0;
  int64_t number = 0;
  while (next < byNumber.size() || !covering.empty()) {
    if (covering.empty()) number = m_sections[byNumber[next]].nFirstObjectNumber;
    while (next < byNumber.size() && m_sections[byNumber[next]].nFirstObjectNumber <= number) {
      covering.push(byNumber[next++]);
    }
    while (!covering.empty() && m_sections[covering.top()].End() <= number) covering.pop();
    if (covering.empty()) continue;
    if (number > std::numeric_limits<int32_t>::max()) return;
    m_ranges.push_back({static_cast<int32_t>(number), covering.top()});
    number = m_sections[covering.top()].End();
    if (next < byNumber.size()) {
      number = std::min(number, int64_t{m_sections[byNumber[next]].nFirstObjectNumber});
    }
  }
}
