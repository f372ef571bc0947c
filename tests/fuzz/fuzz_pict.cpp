#include <cstdint>
#include <cstdlib>

#include "framework/PictReader.h"

/// Whatever the file says, a picture that comes out is whole and within the limits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto picture = ReadPict(std::as_bytes(std::span(data, size)));
  if (!picture) return 0;
  if (picture->width < 1 || picture->width > 4096 || picture->height < 1 || picture->height > 4096)
    std::abort();
  if (picture->pixels.size() != static_cast<std::size_t>(picture->width * picture->height)) std::abort();
  return 0;
}
