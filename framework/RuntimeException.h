#pragma once

#include <exception>

/// Base of what the framework raises at the program. The program catches none of them: the framework names
/// the class in a message box and goes on.
class RuntimeException : public std::exception {
 public:
  /// The name of the class, as the message box shows it.
  const char* what() const noexcept override { return "RuntimeException"; }
};

/// An operation on an object that is not there.
class NilObjectException : public RuntimeException {
 public:
  const char* what() const noexcept override { return "NilObjectException"; }
};

/// `Run` on a thread that has not ended yet.
class ThreadAlreadyRunningException : public RuntimeException {
 public:
  const char* what() const noexcept override { return "ThreadAlreadyRunningException"; }
};
