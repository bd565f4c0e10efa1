#include "support/FontBuilder.h"

#include <map>

namespace {

std::string Number(uint64_t number, int bytes) {
  std::string text;
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8)
    text.push_back(static_cast<char>(number >> shift));
  return text;
}
std::string U16(uint32_t number) {
  return Number(number, 2);
}
std::string U32(uint32_t number) {
  return Number(number, 4);
}

std::string Utf16(const std::string& ascii) {
  std::string wide;
  for (const char c : ascii) wide += std::string(1, '\0') + c;
  return wide;
}

std::string Head() {
  return U32(0x00010000) + U32(0x00010000) + U32(0) + U32(0x5F0F3CF5) + U16(3) + U16(1000) + Number(0, 8) +
         Number(0, 8) + U16(0) + U16(0) + U16(500) + U16(700) + U16(0) + U16(8) + U16(2) + U16(0) + U16(0);
}

std::string Hhea() {
  return U32(0x00010000) + U16(800) + U16(0x10000 - 200) + U16(0) + U16(500) + std::string(22, '\0') +
         U16(0) + U16(2);
}

std::string Maxp(bool cff) {
  return cff ? U32(0x00005000) + U16(2) : U32(0x00010000) + U16(2) + U16(3) + U16(1) + std::string(22, '\0');
}

// Format 4: A is glyph 1.
std::string Cmap() {
  const std::string table = U16(4) + U16(32) + U16(0) + U16(4) + U16(4) + U16(1) + U16(0) + U16('A') +
                            U16(0xFFFF) + U16(0) + U16('A') + U16(0xFFFF) + U16(0x10000 - 'A' + 1) + U16(1) +
                            U16(0) + U16(0);
  return U16(0) + U16(1) + U16(3) + U16(1) + U32(12) + table;
}

std::string Os2(const std::string& vendor) {
  return U16(0) + U16(500) + U16(400) + U16(5) + U16(0) + std::string(22, '\0') + std::string(10, '\0') +
         std::string(16, '\0') + vendor + U16(0x40) + U16('A') + U16('A') + U16(800) + U16(0) + U16(0) +
         U16(800) + U16(200);
}

// One contour of three points.
std::string Triangle() {
  return U16(1) + U16(0) + U16(0) + U16(500) + U16(700) + U16(2) + U16(0) + "\x01\x01\x01" + U16(0) +
         U16(500) + U16(0x10000 - 250) + U16(0) + U16(0) + U16(700) + std::string(1, '\0');
}

std::string Name(const FontBuilder& font) {
  std::map<int, std::string> names{{1, font.family},
                                   {2, font.style},
                                   {4, font.family + " " + font.style},
                                   {5, font.version},
                                   {6, font.postScriptName}};
  if (!font.manufacturer.empty()) names[8] = font.manufacturer;
  if (!font.typographicFamily.empty()) names[16] = font.typographicFamily;
  std::string records;
  std::string texts;
  for (const auto& [id, text] : names) {
    const std::string wide = Utf16(text);
    records += U16(3) + U16(1) + U16(0x409) + U16(static_cast<uint32_t>(id)) +
               U16(static_cast<uint32_t>(wide.size())) + U16(static_cast<uint32_t>(texts.size()));
    texts += wide;
  }
  const auto count = static_cast<uint32_t>(names.size());
  return U16(0) + U16(count) + U16(6 + count * 12) + records + texts;
}

std::string CffIndex(const std::vector<std::string>& items) {
  if (items.empty()) return U16(0);
  std::string index = U16(static_cast<uint32_t>(items.size())) + "\x01";
  std::string data;
  index += "\x01";
  for (const std::string& item : items) {
    data += item;
    index.push_back(static_cast<char>(data.size() + 1));
  }
  return index + data;
}

std::string Cff(const std::string& name) {
  const auto number = [](uint32_t value) { return "\x1D" + U32(value); };
  const std::string start = std::string("\x01\x00\x04\x01", 4) + CffIndex({name});
  const std::string strings = CffIndex({}) + CffIndex({});
  const auto charStrings = static_cast<uint32_t>(start.size() + 5 + 17 + strings.size());
  const std::string glyphs = CffIndex({"\x0E", "\x0E"});
  const auto end = static_cast<uint32_t>(charStrings + glyphs.size());
  const std::string top = number(charStrings) + "\x11" + number(0) + number(end) + "\x12";
  return start + CffIndex({top}) + strings + glyphs;
}

std::string Encrypted(const std::string& plain, uint16_t key) {
  std::string cipher;
  for (const char c : "xxxx" + plain) {
    const auto byte = static_cast<uint8_t>(static_cast<uint8_t>(c) ^ (key >> 8));
    key = static_cast<uint16_t>((byte + key) * 52845 + 22719);
    cipher.push_back(static_cast<char>(byte));
  }
  return cipher;
}

std::string Hex(const std::string& bytes) {
  std::string text;
  for (const unsigned char c : bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    text += {kDigits[c >> 4], kDigits[c & 15]};
    if (text.size() % 65 == 64) text += "\n";
  }
  return text;
}

std::string Type1Head(const FontBuilder& font) {
  return "%!PS-AdobeFont-1.0: " + font.postScriptName +
         " 001.000\n11 dict begin\n/FontInfo 8 dict dup begin\n" + "/version (" + font.version +
         ") readonly def\n/Notice (Copyright by " + font.manufacturer + ") readonly def\n/FullName (" +
         font.family + " " + font.style + ") readonly def\n/FamilyName (" + font.family +
         ") readonly def\nend readonly def\n/FontName /" + font.postScriptName +
         " def\n/PaintType 0 def\n/FontType 1 def\n/FontMatrix [0.001 0 0 0.001 0 0] readonly def\n" +
         "/Encoding StandardEncoding def\n/FontBBox {0 0 500 700} readonly def\ncurrentdict end\n" +
         "currentfile eexec\n";
}

std::string Type1Private() {
  // 0 500 hsbw endchar
  const std::string glyph = Encrypted("\x8B\xF8\x88\x0D\x0E", 4330);
  const std::string length = std::to_string(glyph.size());
  return Encrypted(
      "dup /Private 8 dict dup begin\n/RD {string currentfile exch readstring pop} executeonly def\n"
      "/ND {noaccess def} executeonly def\n/NP {noaccess put} executeonly def\n/BlueValues [] def\n"
      "/MinFeature {16 16} def\n/password 5839 def\n2 index /CharStrings 2 dict dup begin\n/.notdef " +
          length + " RD " + glyph + " ND\n/A " + length + " RD " + glyph +
          " ND\nend\nend\nreadonly put\nnoaccess put\ndup /FontName get exch definefont pop\n"
          "mark currentfile closefile\n",
      55665);
}

std::string Type1Tail() {
  std::string tail;
  for (int i = 0; i < 8; ++i) tail += std::string(64, '0') + "\n";
  return tail + "cleartomark\n";
}

std::string Segment(char type, const std::string& data) {
  const size_t n = data.size();
  return std::string("\x80") + type + static_cast<char>(n) + static_cast<char>(n >> 8) +
         static_cast<char>(n >> 16) + static_cast<char>(n >> 24) + data;
}

}  // namespace

std::string FontBuilder::Sfnt(bool cff, size_t offset) const {
  std::map<std::string, std::string> tables{{"OS/2", Os2(vendor)},
                                            {"cmap", Cmap()},
                                            {"head", Head()},
                                            {"hhea", Hhea()},
                                            {"hmtx", U16(500) + U16(0) + U16(500) + U16(0)},
                                            {"maxp", Maxp(cff)},
                                            {"name", Name(*this)},
                                            {"post", U32(0x00030000) + std::string(28, '\0')}};
  if (!kern.empty()) tables["kern"] = kern;
  if (cff) {
    tables["CFF "] = Cff(postScriptName);
  } else {
    const std::string glyph = Triangle() + std::string(Triangle().size() % 2, '\0');
    const auto half = static_cast<uint32_t>(glyph.size() / 2);
    tables["glyf"] = glyph + glyph;
    tables["loca"] = U16(0) + U16(half) + U16(half * 2);
  }
  const auto count = static_cast<uint32_t>(tables.size());
  std::string directory =
      (cff ? std::string("OTTO") : U32(0x00010000)) + U16(count) + U16(128) + U16(3) + U16(count * 16 - 128);
  std::string data;
  for (const auto& [tag, table] : tables) {
    directory += tag + U32(0) + U32(static_cast<uint32_t>(offset + 12 + count * 16 + data.size())) +
                 U32(static_cast<uint32_t>(table.size()));
    data += table + std::string((4 - table.size() % 4) % 4, '\0');
  }
  return directory + data;
}

std::string FontBuilder::TrueType() const {
  return Sfnt(false, 0);
}

std::string FontBuilder::OpenType() const {
  return Sfnt(true, 0);
}

std::string FontBuilder::Collection(const std::vector<FontBuilder>& fonts) {
  std::string head = "ttcf" + U32(0x00010000) + U32(static_cast<uint32_t>(fonts.size()));
  const size_t start = head.size() + fonts.size() * 4;
  std::string bodies;
  for (const FontBuilder& font : fonts) {
    head += U32(static_cast<uint32_t>(start + bodies.size()));
    bodies += font.Sfnt(false, start + bodies.size());
  }
  return head + bodies;
}

std::string FontBuilder::Type1() const {
  return Type1Head(*this) + Hex(Type1Private()) + "\n" + Type1Tail();
}

std::string FontBuilder::Type1Segments() const {
  return Segment(1, Type1Head(*this)) + Segment(2, Type1Private()) + Segment(1, Type1Tail()) + "\x80\x03";
}
