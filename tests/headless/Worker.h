#pragma once

#include <functional>

#include "framework/Thread.h"

/// A thread of the program that does what a test says.
class Worker : public Thread {
 public:
  std::function<void()> Work;

 protected:
  void Event_Run() override { Work(); }
};
