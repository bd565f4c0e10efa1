#include "Complaint.h"

#include <cstdio>

#include "GErrors.h"
#include "Utf8Text.h"

void Complain(const std::string& text) {
  std::fprintf(stderr, "hornbeam: %s\n", PrintableText(text).c_str());
}

void ComplainOfCode(const std::string& text, unsigned int code) {
  std::fprintf(stderr, "hornbeam: %s: %s (0x%08X)\n", PrintableText(text).c_str(),
               GetNameForErrorCode(code).c_str(), code);
}
