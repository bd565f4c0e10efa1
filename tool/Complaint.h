#pragma once

#include <string>

/// "hornbeam: " and the text on standard error, as one line.
void Complain(const std::string& text);

/// The same with what an agent's code means behind it; its name and number where users have no use for more.
void ComplainOfCode(const std::string& text, unsigned int code);
