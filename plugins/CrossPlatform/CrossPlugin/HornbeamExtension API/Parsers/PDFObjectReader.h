#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Parsers/FontParser.h"
#include "Parsers/PDFObject.h"
#include "Parsers/ParsedFile.h"
#include "Parsers/XREFTable.h"

/// The lower half of FontParserPDF: characters, tokens, objects and the classic cross-reference tables of a
/// PDF (ISO 32000-1, 7.2 to 7.5), as far as it takes to reach the fonts.
///
/// It reads on any bytes and never goes back over what it has read, except by FindObject(). Cross-reference
/// streams and object streams aren't understood, and nothing is decrypted.
///
/// The error field is the one brake: a read of nothing sets it, and so does a file that makes its reader
/// read more than 64 times its length and 16 MiB. Every loop tests it. While it is set there are only empty
/// tokens, and no object is found.
class PDFObjectReader : public FontParser {
 protected:
  PDFObjectReader(CFURLRef url, CFStringRef path) : m_file(url, path) {}

  /// Opens the file and reads the first block. False when it doesn't open.
  bool OpenFile();

  // ---- Characters

  /// Takes the next 256 bytes, or fewer at the end of the file, from the read position.
  void ReadBlock();
  /// The next character, 0 when there is none. The last one of the file sets the error field already.
  char ReadCharacter();
  /// The next character, which stays unread; 0 when there is none.
  char PeekCharacter() const;
  /// Skips blanks, tabs and line ends. Comments aren't known.
  void SkipWhitespace();

  /// The file offset behind the current block.
  int64_t GetFilePosition() const { return m_nFilePosition; }
  /// The file offset of the next character.
  int64_t GetCurrentPosition() const { return m_nFilePosition - (m_nBlockLength - m_nBlockPosition); }
  /// Goes there and reads a block; a place that the file doesn't have is a read of nothing.
  void SeekAndReadBlock(int64_t offset);
  /// The same, and says so in the trace.
  void GoTo(int64_t offset);
  int64_t GetFileLength() const { return m_nFileLength; }

  /// Reads bytes from anywhere, without a change to what the next character is. Short at the end of the file.
  std::string ReadBytesAt(int64_t offset, size_t count);

  /// What is in memory from an offset on, at least one byte unless the file ends there, likewise. Valid until
  /// the next operation.
  std::string_view BytesAheadAt(int64_t offset);

  /// How many bytes may still be read.
  int64_t GetRemainingBudget();
  /// Sets the limit below what OpenFile() works out.
  void LimitBudget(int64_t bytes) { m_nBudgetLimit = bytes; }

  // ---- Tokens

  /// Reads the next token, at most 256 characters, which is the result and the current token. Empty at the
  /// end of the file and at a backslash.
  const std::string& ProcessToken(bool unused = false);
  /// The same for a line, without its end.
  const std::string& ProcessLine();
  /// Reads a token; its value, or 0 when it is no number.
  int64_t GetCurrentNumber();
  /// The value of a token; 0 when it is no number, or one of more than 32 bits.
  static int32_t ToInt32(std::string_view token);

  /// Whether the text has digits only; "" counts, as 0. Not for a number that doesn't fit.
  ///
  /// \param outValue  Receives the value. May be null.
  static bool IsNumber(std::string_view text, int64_t* outValue);
  /// The name without its "/".
  static std::string StripPDFLabel(std::string_view name);
  /// A PDF font name as a PostScript name: "/ABCDEF+Foo,Bold" is "Foo-Bold".
  static std::string StripPDFFontName(std::string_view name);

  // ---- Objects

  /// Reads "n g R", or a bracketed list of them.
  ///
  /// \param outObjects  The objects are added to it; null drops them.
  void ProcessObject(std::vector<PDFObject>* outObjects);
  /// The same; the first object, or one of number 0 when there was none.
  PDFObject ProcessFirstObject();

  /// The object's index in the cross-reference table; none when the table has it nowhere in the file.
  std::optional<size_t> FindEntry(const PDFObject& object);
  /// Goes to an object. True if the reader stands behind its "n g" then.
  bool FindObject(const PDFObject& object);
  /// The same, and reads one token more, which must be "obj".
  ///
  /// \param outUnexpectedToken  Set when the object was there and that token was another. May be null.
  bool EnterObject(const PDFObject& object, bool* outUnexpectedToken = nullptr);

  /// Skips a value: a token, or all up to the end of what the token opens.
  void SkipObject();
  /// Skips a rectangle. Of a reference only its first number goes.
  void SkipMediaBox();
  /// Skips characters up to "]", at most 256.
  void ReadID();

  // ---- Cross-reference tables

  /// The number behind "startxref" in the last 100 bytes, 0 when there is none.
  int64_t GetOffsetOfLastXRefSection();
  /// Reads the table at the cross-reference offset and those that come before it in time.
  void ProcessXRefSection();

  ParsedFile m_file;
  std::string m_sCurrentToken;
  XREFTable m_xrefTable;
  PDFObject m_rootObject;
  PDFObject m_encryptObject;
  int64_t m_nXRefOffset = 0;       ///< The table to read next.
  int64_t m_nFileStartOffset = 0;  ///< Where "%PDF" stands; added to every offset from the file.
  int64_t m_nObjectCount = 0;      ///< The largest /Size.
  bool m_bHasXRefTable = false;
  bool m_bHasEncryption = false;  ///< A trailer has /Encrypt.
  bool m_bHasXRefStream = false;  ///< "startxref" leads to a cross-reference stream.

 private:
  static constexpr int kBlockSize = 256;

  size_t ReadAt(int64_t offset, char* target, size_t count);
  bool TakeTokenInBlock();
  bool TakeXRefEntryInBlock(int64_t* offset, int64_t* generation, char* state);
  char ReadHexPair(char plain);
  bool ReadXRefKeyword();
  bool ReadXRefSubsections();
  int64_t ReadTrailer();

  char m_block[kBlockSize + 1] = {};
  int m_nBlockLength = 0;
  int m_nBlockPosition = 0;  // -1: a pushed-back "/"
  int64_t m_nFilePosition = 0;
  int64_t m_nFileLength = 0;
  int64_t m_nBudget = 0;
  int64_t m_nBudgetLimit = INT64_MAX;
  int64_t m_nBytesRead = 0;
};
