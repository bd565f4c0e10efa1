#include "HostNames.h"

namespace {

struct Product {
  const char* code;
  const char* name;
};

constexpr Product kProducts[] = {
    {"InDesign", "InDesign"},     {"InCopy", "InCopy"}, {"Illustrator", "Illustrator"},
    {"Photoshop", "Photoshop"},   {"Sketch", "Sketch"}, {"AfterEffects", "After Effects"},
    {"AECC", "After Effects CC"},
};

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// "CC2020" as " CC 2020".
std::string EditionText(const std::string& edition) {
  std::string text;
  for (std::size_t i = 0; i < edition.size(); ++i) {
    const bool isStart = i == 0 || (IsDigit(edition[i]) && !IsDigit(edition[i - 1]) && edition[i - 1] != '.');
    if (isStart && edition[i] != ' ' && (text.empty() || text.back() != ' ')) text += ' ';
    text += edition[i];
  }
  return text;
}

}  // namespace

std::string HostNames::DisplayName(const std::string& hostApp) {
  if (hostApp.empty()) return "the host application";
  for (const Product& product : kProducts) {
    if (hostApp.starts_with(product.code)) {
      return product.name + EditionText(hostApp.substr(std::string(product.code).size()));
    }
  }
  return hostApp;
}
