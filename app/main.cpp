#include "app/Startup.h"

int main(int argc, char** argv) {
  return _Main(argc, argv);
}
