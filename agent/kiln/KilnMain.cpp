#include "kiln/KilnApp.h"

int main(int argc, char** argv) {
  return kiln::RunKiln(argc, argv);
}
