#pragma once

#include <string>

/// "hornbeam: " and the text on standard error, as one line.
void Complain(const std::string& text);

/// The same with what an agent's code means, and its number, behind it.
void ComplainOfCode(const std::string& text, unsigned int code);
