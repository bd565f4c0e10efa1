#include "kiln/reader/FontReaderProgram.h"

int main(int argc, char** argv) {
  return kiln::RunFontReader(argc, argv);
}
