#pragma once

#include <string>
#include <string_view>

/// A PDF in the making: written as readable text, with marks where a file has numbers that nobody counts by
/// hand.
///
/// A line that begins with "<number> <generation> obj" begins that object. The marks:
///
///     {{xref}}             the cross-reference table of all objects since the last {{xref}}
///     {{startxref}}        "startxref", the offset of the last {{xref}}, and "%%EOF"
///     {{mark NAME}}        nothing; names the place
///     {{offset NAME}}      the place's offset in ten digits; "{{offset NAME + 3}}" what lies behind it
///     {{xref-offset}}      the offset of the last {{xref}}, in ten digits
///     {{fill COUNT C}}     a character, that often; a blank without C
///     {{hex 00ff}}         bytes
///     {{flate}} ... {{end}}  the text between them as zlib data
///
/// Offsets count from "%PDF". A mark that isn't known throws std::runtime_error.
std::string ExpandPdf(std::string_view text);

/// A file of one page: catalog 1, page tree 2, page 3, with a table behind them.
///
/// \param pageKeys  What stands in the page's dictionary behind its type and parent.
/// \param objects  Further objects, from number 4 on.
std::string PdfPage(std::string_view pageKeys, std::string_view objects);

/// The same as text with marks, for what changes before it is expanded.
std::string PdfPageText(std::string_view pageKeys, std::string_view objects);

/// Bytes as zlib data.
std::string ZlibData(std::string_view bytes);
