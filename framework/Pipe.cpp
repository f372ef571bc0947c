#include "framework/Pipe.h"

#include <fcntl.h>
#include <unistd.h>

Pipe Pipe::Open() {
  int ends[2] = {-1, -1};
#ifdef __APPLE__  // has no pipe2; its children are spawned with POSIX_SPAWN_CLOEXEC_DEFAULT
  const int failed = pipe(ends);
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
#else
  const int failed = pipe2(ends, O_CLOEXEC);
#endif
  Pipe opened;
  if (failed) return opened;
  opened.read_ = Descriptor(ends[0]);
  opened.write_ = Descriptor(ends[1]);
  return opened;
}
