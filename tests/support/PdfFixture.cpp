#include "support/PdfFixture.h"

#include <zlib.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <stdexcept>

namespace {

std::string TenDigits(size_t value) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%010zu", value);
  return digits;
}

class Expander {
 public:
  // A first run finds the places, a second one names them: every number has ten digits, so nothing moves.
  std::string Run(std::string_view text) {
    m_places["xref"] = 0;
    Expand(text, true);
    return Expand(text, false);
  }

 private:
  std::string Expand(std::string_view text, bool isFirstRun) {
    m_isFirstRun = isFirstRun;
    m_out.clear();
    m_objects.clear();
    bool atLineStart = true;
    while (!text.empty()) {
      if (atLineStart) NoteObject(text);
      if (text.starts_with("{{")) {
        const size_t end = text.find("}}");
        if (end == std::string_view::npos) throw std::runtime_error("A mark without its end");
        const std::string mark(text.substr(2, end - 2));
        text.remove_prefix(end + 2);
        if (mark == "flate") {
          const size_t close = text.find("{{end}}");
          if (close == std::string_view::npos) throw std::runtime_error("{{flate}} without {{end}}");
          m_out += ZlibData(text.substr(0, close));
          text.remove_prefix(close + 7);
        } else {
          Replace(mark);
        }
        atLineStart = m_out.ends_with('\n');
        continue;
      }
      atLineStart = text[0] == '\n' || text[0] == '\r';
      m_out += text[0];
      text.remove_prefix(1);
    }
    return m_out;
  }

  // Offsets count from "%PDF".
  size_t Here() const {
    const size_t start = m_out.find("%PDF");
    return m_out.size() - (start == std::string::npos ? 0 : start);
  }

  void NoteObject(std::string_view text) {
    std::istringstream line{std::string(text.substr(0, 40))};
    unsigned number = 0;
    unsigned generation = 0;
    std::string keyword;
    if (line >> number >> generation >> keyword && keyword.starts_with("obj") && text[0] != ' ') {
      m_objects[number] = {Here(), generation};
    }
  }

  void Replace(const std::string& mark) {
    std::istringstream words(mark);
    std::string command;
    std::string name;
    words >> command;
    if (command == "xref") {
      m_places["xref"] = Here();
      WriteTable();
    } else if (command == "startxref") {
      m_out += "startxref\n" + TenDigits(m_places["xref"]) + "\n%%EOF\n";
    } else if (command == "xref-offset") {
      m_out += TenDigits(m_places["xref"]);
    } else if (command == "mark") {
      words >> name;
      m_places[name] = Here();
    } else if (command == "offset") {
      char sign = '+';
      size_t more = 0;
      words >> name >> sign >> more;
      if (!m_isFirstRun && m_places.count(name) == 0) throw std::runtime_error("No place " + name);
      m_out += TenDigits(m_places[name] + more);
    } else if (command == "fill") {
      size_t count = 0;
      char c = ' ';
      words >> count >> c;
      if (count > size_t{4} << 20) throw std::runtime_error("Too much to fill in");
      m_out += std::string(count, words ? c : ' ');
    } else if (command == "hex") {
      words >> name;
      for (size_t i = 0; i + 1 < name.size(); i += 2) {
        m_out += static_cast<char>(std::stoi(name.substr(i, 2), nullptr, 16));
      }
    } else {
      throw std::runtime_error("No such mark: " + mark);
    }
  }

  // One subsection for each run of numbers, and the head of the free list.
  void WriteTable() {
    m_out += "xref\n0 1\n0000000000 65535 f \n";
    for (auto first = m_objects.begin(); first != m_objects.end();) {
      auto last = first;
      unsigned count = 0;
      std::string entries;
      for (; last != m_objects.end() && last->first == first->first + count; ++last, ++count) {
        char entry[32];
        std::snprintf(entry, sizeof entry, "%010zu %05u n \n", last->second.offset, last->second.generation);
        entries += entry;
      }
      m_out += std::to_string(first->first) + " " + std::to_string(count) + "\n" + entries;
      first = last;
    }
    m_objects.clear();
  }

  struct Object {
    size_t offset;
    unsigned generation;
  };

  bool m_isFirstRun = true;
  std::string m_out;
  std::map<unsigned, Object> m_objects;  // since the last table
  std::map<std::string, size_t> m_places;
};

}  // namespace

std::string ExpandPdf(std::string_view text) {
  return Expander().Run(text);
}

std::string PdfPageText(std::string_view pageKeys, std::string_view objects) {
  return "%PDF-1.4\n"
         "1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"
         "2 0 obj\n<< /Type /Pages /Kids [3 0 R] /Count 1 >>\nendobj\n"
         "3 0 obj\n<< /Type /Page /Parent 2 0 R " +
         std::string(pageKeys) + " >>\nendobj\n" + std::string(objects) +
         "\n{{xref}}\ntrailer << /Root 1 0 R >>\n{{startxref}}";
}

std::string PdfPage(std::string_view pageKeys, std::string_view objects) {
  return ExpandPdf(PdfPageText(pageKeys, objects));
}

std::string ZlibData(std::string_view bytes) {
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  std::string data(size, '\0');
  if (compress(reinterpret_cast<Bytef*>(data.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
               static_cast<uLong>(bytes.size())) != Z_OK) {
    throw std::runtime_error("compress");
  }
  data.resize(size);
  return data;
}
