#pragma once

#include <cstdarg>

/// The core of OutputIndentedAndFormattedString(), for functions that have the arguments as a va_list.
int TraceLine(int indentChange, const char* format, va_list args) __attribute__((format(printf, 2, 0)));

/// The same without a length to tell, and without the cost of formatting what neither a sink nor a file
/// takes.
void TraceLineIfHeard(int indentChange, const char* format, va_list args)
    __attribute__((format(printf, 2, 0)));
