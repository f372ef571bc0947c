#include "framework/Descriptor.h"

#include <unistd.h>

void Descriptor::Close() {
  if (fd_ >= 0) close(std::exchange(fd_, -1));
}
