// Writing the list of fonts into the EPS file.
#include <algorithm>
#include <limits>
#include <memory>
#include <sstream>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "Memory/CFVector.h"
#include "Parsers/EPSAttributes.h"
#include "Parsers/FontParserEPS.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

constexpr std::string_view kEndComments = "%%EndComments";
constexpr std::string_view kDamaged = "writing failed, and the file may be damaged";
constexpr std::string_view kUnchanged = "writing failed, and the file is unchanged";
constexpr int64_t kMaxBlockSize = 512000;
constexpr size_t kMaxValueLength = 254;

// Called for each key of a record; `context` is the output stream.
void XMLOutputGenerator(const void* key, const void* value, void* context) {
  auto keyText = dynamicCF<CFStringRef>(key);
  auto valueText = dynamicCF<CFStringRef>(value);
  std::string name;
  if (!keyText || !valueText || !EPSAttributes::OutputKeyForGlyphMarkKey(keyText, name)) return;
  const std::string text = ToStdString(valueText);
  static constexpr std::string_view kUnwritable("\"\r\n\0", 4);
  if (text.size() > kMaxValueLength || text.find_first_of(kUnwritable) != std::string::npos) return;
  *static_cast<std::ostream*>(context) << ' ' << name << "=\"" << text << '"';
}

int Read(FStreamWrapper& stream, int64_t position, char* target, int64_t count) {
  stream.seekg(position, std::ios_base::beg);
  auto length = static_cast<unsigned long>(count);
  return ReadStream(stream, &length, target);
}

int Write(FStreamWrapper& stream, int64_t position, const char* source, int64_t count) {
  stream.seekp(position, std::ios_base::beg);
  auto length = static_cast<unsigned long>(count);
  return WriteStream(stream, &length, source);
}

}  // namespace

int FontParserEPS::Save() {
  OperationTrace trace("FontParserEPS::Save", "Entering %s()", "FontParserEPS::Save");
  m_nError = 0;
  if (m_readOnly || FontRecord::Count(m_fonts.get()) == 0 || !m_file.Open(false)) return 0;
  const std::string block = WriteFontRecordsToBuffer();
  if (!block.empty()) {
    m_nError = CheckBeforeSave(static_cast<int64_t>(block.size()));
    if (m_nError == 0) m_nError = InsertBlock(block);
  }
  m_file.stream.close();
  if (m_nError == 0 && m_file.stream.fail()) {
    AddNote(kDamaged);
    m_nError = kErrorNotDone;
  }
  // A second block comes behind the first, so that its records win.
  if (m_nError == 0) m_endCommentsOffset += static_cast<int64_t>(block.size());
  trace.Exiting("%s() returning %d", "FontParserEPS::Save", m_nError);
  return m_nError;
}

int FontParserEPS::InsertBlock(const std::string& block) {
  FStreamWrapper& stream = m_file.stream;
  const auto length = static_cast<int64_t>(block.size());
  int result = AllocateGapInFile(m_endCommentsOffset, length);
  if (result != 0) return result;
  result = Write(stream, m_endCommentsOffset, block.data(), length);
  if (result == 0 && IsWindowsEPS(m_header.FirstWord())) {
    const EPSBinaryHeader before = m_header;
    m_header.AddToPostScript(m_endCommentsOffset, length);
    result = Write(stream, 0, m_header.Bytes().data(), EPSBinaryHeader::kSize);
    if (result != 0) {
      m_header = before;
      stream.clear();
      Write(stream, 0, m_header.Bytes().data(), EPSBinaryHeader::kSize);
    }
  }
  if (result != 0) TakeBackGap(m_endCommentsOffset, length);
  return result;
}

std::string FontParserEPS::WriteFontRecordsToBuffer() const {
  std::ostringstream block;
  const CFIndex count = FontRecord::Count(m_fonts.get());
  for (CFIndex i = 0; i < count; ++i) {
    CFDictionaryRef font = FontRecord::At(m_fonts.get(), i);
    if (font == nullptr) continue;
    block << (i == 0 ? "%%DocumentFontSpecs: " : "%%+ ") << "<FONTSPEC";
    CFDictionaryApplyFunction(font, XMLOutputGenerator, static_cast<std::ostream*>(&block));
    block << "/>\r";
  }
  return std::move(block).str();
}

// Everything that can be known to go wrong, before the first byte is written. What does becomes a note.
int FontParserEPS::CheckBeforeSave(int64_t blockLength) {
  FStreamWrapper& stream = m_file.stream;
  const auto refuse = [this](std::string_view note) {
    AddNote(note);
    return kErrorNotDone;
  };
  // The block would come before the first line, and the file be no EPS any more.
  if (m_endCommentsOffset == 0) return refuse("no %%EndComments to write in front of");
  if (m_endCommentsOffset > std::numeric_limits<int32_t>::max()) {
    return refuse("%%EndComments lies too far back");
  }
  // What stands there in a file without "%!" isn't PostScript.
  if (m_endCommentsOffset < static_cast<int64_t>(EPSBinaryHeader::kSize) && !IsMacEPS(m_header.FirstWord())) {
    return refuse("%%EndComments lies in the header");
  }
  char found[kEndComments.size()];
  if (Read(stream, m_endCommentsOffset, found, kEndComments.size()) != 0 ||
      std::string_view(found, kEndComments.size()) != kEndComments) {
    return refuse("changed since it was read");
  }
  if (IsWindowsEPS(m_header.FirstWord())) {
    EPSBinaryHeader header;
    if (Read(stream, 0, header.Bytes().data(), EPSBinaryHeader::kSize) != 0 || header != m_header) {
      return refuse("changed since it was read");
    }
    if (!header.AddToPostScript(m_endCommentsOffset, blockLength)) {
      return refuse("the binary header can't take a longer PostScript section");
    }
  }
  if (stream.Buffer().FreeSpace() < static_cast<uint64_t>(blockLength)) return refuse("no room on the disk");
  return 0;
}

// Moves the tail of the file towards its end, back to front, so that no byte is overwritten before it is
// read.
int FontParserEPS::AllocateGapInFile(int64_t offset, int64_t gapSize) {
  FStreamWrapper& stream = m_file.stream;
  const int64_t length = stream.GetStreamLength();
  if (length == 0) return 0;
  stream.LengthenFileStream(length + gapSize);
  if (!stream.good()) {
    // Nothing has moved yet, so the file can be what it was.
    stream.Buffer().Truncate(length);
    AddNote("can't be made longer, and is unchanged");
    return kErrorNotDone;
  }
  int64_t blockSize = std::min(kMaxBlockSize, length);
  const auto block = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(blockSize));
  int64_t readPosition = length;
  int64_t writePosition = length + gapSize;
  while (readPosition > offset) {
    readPosition -= blockSize;
    writePosition -= blockSize;
    if (readPosition < offset) {
      const int64_t cut = offset - readPosition;
      blockSize -= cut;
      writePosition += cut;
      readPosition = offset;
    }
    const bool wasRead = Read(stream, readPosition, block.get(), blockSize) == 0;
    if (wasRead && Write(stream, writePosition, block.get(), blockSize) == 0) continue;
    stream.clear();
    // Part of the block may lie over where it came from.
    if (wasRead && Write(stream, readPosition, block.get(), blockSize) != 0) {
      AddNote(kDamaged);
    } else {
      TakeBackGap(readPosition + blockSize, gapSize);
    }
    return kErrorNotDone;
  }
  return 0;
}

// After a write that failed: what has moved, from a position on, goes back front to back, and the file gets
// its old length.
void FontParserEPS::TakeBackGap(int64_t position, int64_t gapSize) {
  FStreamWrapper& stream = m_file.stream;
  stream.clear();
  const int64_t length = stream.GetStreamLength() - gapSize;
  const auto block = std::make_unique_for_overwrite<char[]>(kMaxBlockSize);
  while (position < length) {
    const int64_t count = std::min(kMaxBlockSize, length - position);
    if (Read(stream, position + gapSize, block.get(), count) != 0 ||
        Write(stream, position, block.get(), count) != 0) {
      AddNote(kDamaged);
      return;
    }
    position += count;
  }
  AddNote(stream.Buffer().Truncate(length) ? kUnchanged : kDamaged);
}
