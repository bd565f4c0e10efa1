#pragma once

#include <string_view>

/// The decimal number at the start of a text, after white space: a sign, digits, a point and digits. 0 when
/// there is none. "." is the point in every locale, and "inf", "nan", hexadecimal and exponents are no
/// numbers. A number too large for a double is infinite.
double ReadDecimalPrefix(std::string_view text);
