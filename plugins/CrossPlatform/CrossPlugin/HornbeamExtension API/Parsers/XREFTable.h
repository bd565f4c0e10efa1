#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// One entry of a cross-reference section, packed, since a file may have millions of them. An offset or a
/// generation that doesn't fit makes no entry that could be found.
struct XREFSubsection {
  uint64_t nOffset : 46;            ///< As written in the file, without its file start offset.
  uint64_t bKnown : 1;              ///< False when the offset didn't fit: the object is not there.
  uint64_t nGenerationNumber : 16;  ///< At most 65535, as published.
  uint64_t bInUse : 1;
};

/// Where the sections of all cross-reference tables of a file say that its objects lie (ISO 32000-1, 7.5.4).
///
/// Sections are added newest first, and the first one that covers an object number is the one that counts.
/// Memory is bounded: 2^22 entries in 2^17 sections; what a file has beyond that is not kept.
class XREFTable {
 public:
  /// Opens a section of consecutive object numbers, empty at first.
  void BeginSection(int64_t firstObjectNumber);
  /// Adds the next entry to it.
  void AddEntry(int64_t offset, int64_t generation, bool bInUse);

  /// The index of the object's entry, for At(); none when no section covers the number. Not between
  /// additions: the order of the sections is worked out at the first call.
  std::optional<size_t> Find(int32_t objectNumber);
  const XREFSubsection& At(size_t index) const { return m_entries[index]; }

  size_t EntryCount() const { return m_entries.size(); }
  bool IsEmpty() const { return m_entries.empty(); }

 private:
  struct XREFSection {
    int64_t nFirstObjectNumber;
    uint32_t nFirstEntry;  // index of its first entry
    uint32_t nCount;
  };
  // Object numbers up to the next range's begin, or up to `end`, that one section is the first to cover.
  struct Range {
    int64_t nBegin;
    int64_t nEnd;
    uint32_t nSection;
  };

  void BuildRanges();

  std::vector<XREFSection> m_sections;
  std::vector<XREFSubsection> m_entries;
  std::vector<Range> m_ranges;  // sorted, disjoint
  bool m_bSorted = false;
};
