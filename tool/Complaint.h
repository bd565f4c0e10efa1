#pragma once

#include <string>

/// "hornbeam: " and the text on standard error, as one line.
void Complain(const std::string& text);

/// The same with the name and number of an agent's code behind it.
void ComplainOfCode(const std::string& text, unsigned int code);
