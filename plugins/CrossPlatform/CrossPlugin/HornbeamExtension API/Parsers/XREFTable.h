#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// One entry of a cross-reference section, packed, since a file may have millions of them.
struct XREFSubsection {
  uint64_t nOffset : 47;            ///< As written in the file; 0, where no object is, when it doesn't fit.
  uint64_t nGenerationNumber : 16;  ///< At most 65535, as published.
  uint64_t bInUse : 1;
};

/// Where the cross-reference tables of a file say that its objects lie (ISO 32000-1, 7.5.4).
///
/// Sections are added newest first, and the first one that covers an object number is the one that counts.
/// Memory is bounded: 2^22 entries in 2^17 sections, and what a file has beyond that is not kept.
class XREFTable {
 public:
  /// Begins a section of consecutive object numbers, empty at first. An empty section covers nothing.
  void BeginSection(int64_t firstObjectNumber);
  /// Adds the next entry to it.
  void AddEntry(int64_t offset, int64_t generation, bool bInUse);

  /// The index of the object's entry, for At(); none when no section covers the number.
  std::optional<size_t> Find(int32_t objectNumber);
  const XREFSubsection& At(size_t index) const { return m_entries[index]; }

  size_t EntryCount() const { return m_entries.size(); }

 private:
  struct XREFSection {
    int64_t End() const { return int64_t{nFirstObjectNumber} + nCount; }

    int32_t nFirstObjectNumber;
    uint32_t nFirstEntry;
    uint32_t nCount;
  };
  // The object numbers from nBegin on, up to the next range or the section's end, for which a section counts.
  struct Range {
    int32_t nBegin;
    uint32_t nSection;
  };

  void BuildRanges();

  std::vector<XREFSection> m_sections;
  std::vector<XREFSubsection> m_entries;
  std::vector<Range> m_ranges;     // sorted; built when first asked
  int64_t m_nPendingSection = -1;  // begun, without an entry
  bool m_bSectionTakesEntries = false;
};
