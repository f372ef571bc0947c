#pragma once

#include "framework/Pipe.h"

/// Quits the program the normal way on SIGTERM, and on SIGINT and SIGHUP unless the one who started it has it
/// ignore these.
///
/// Made before Qt's application, whose start takes a moment: a signal that comes meanwhile is kept until
/// `Listen`. A second one ends the process at once, as a display that does not answer would keep it for ever.
class SignalWatch {
 public:
  SignalWatch();
  /// From here on signals quit the program. Qt's application is there.
  void Listen();

 private:
  Pipe& pipe_;  // stays open: a signal may come until the process ends
};
