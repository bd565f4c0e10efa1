#include "Identity/DecimalPrefix.h"

#include <charconv>
#include <limits>

double ReadDecimalPrefix(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0.0;
  text.remove_prefix(start);
  const bool isNegative = text.front() == '-';
  if (isNegative || text.front() == '+') text.remove_prefix(1);

  text = text.substr(0, text.find_first_not_of("0123456789."));
  double value = 0.0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (error == std::errc::result_out_of_range) {
    const std::string_view whole = text.substr(0, text.find('.'));
    const bool isHuge = whole.find_first_not_of('0') != std::string_view::npos;
    value = isHuge ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return isNegative ? -value : value;
}
