#pragma once

namespace kiln {

/// The program KilnFontReader: a process of its own for what may go wrong with files of any origin.
///
///   KilnFontReader                   answers ReaderJob frames until its input ends
///   KilnFontReader --system FOLDER   writes what fontconfig shows, but for FOLDER
///
/// It limits its own memory, file sizes and, for each file, processor time; what passes them ends the
/// process, and Kiln goes on with another. \return The exit status: 0; 1 when its reader has gone; 2 for
/// wrong arguments.
int RunFontReader(int argc, char** argv);

}  // namespace kiln
