#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

/// Asks the user for a folder to save into, which need not exist yet.
///
/// The question goes to the terminal: an empty line takes the proposed folder, which is the name pattern with
/// the document's name in the place of "%@", in the current directory; the end of the input cancels. A tilde
/// is expanded, a relative path is taken from the current directory.
///
/// \param documentName  UTF-8.
/// \param outPath  Receives the absolute path, UTF-8; untouched on -1.
/// \param title, message, namePattern  As the user should read them. Null reads as empty. Not owned.
/// \return 0 with a path; -1 when the user cancels or can't be asked, because there is no terminal or
///         LOOM_TERMINAL_PROMPT=0 forbids questions.
///
/// Thread: main. It comes back when the user has answered.
int ShowSaveFolderDialog(const std::string& documentName, std::string& outPath, CFStringRef title,
                         CFStringRef message, CFStringRef namePattern);
