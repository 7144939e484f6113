#pragma once

#include <cstdarg>
#include <exception>
#include <stdexcept>

#include "zuml/core/export.h"

/// The error that the library throws, always by value. Its text usually starts with the name of the
/// operation that refused: "operator+: Diferent number of channels 1!=3".
///
/// Copies share the text and cannot fail, so a failure met in one thread can be kept, copied and
/// thrown again in another.
class ZUML_API XQException : public std::exception {
 public:
  /// An error without a text: what() is "".
  XQException();

  /// An error whose text is made as printf would, whatever its length. A text that comes from
  /// outside goes in as an argument of "%s", never as the format.
  explicit XQException(const char* format, ...) __attribute__((format(printf, 2, 3)));

  XQException(const XQException& other) noexcept;
  XQException& operator=(const XQException& other) noexcept;
  ~XQException() override;

  /// The text, owned by this object.
  const char* what() const noexcept override;

 protected:
  /// Replaces the text. For derived classes, which take their own variable arguments.
  void SetMessage(const char* format, std::va_list arguments) __attribute__((format(printf, 2, 0)));

 private:
  // Its copies are counted references to one text, which is what makes ours free of failure.
  std::runtime_error text_;
};

/// A file that should be read does not exist.
class ZUML_API XQExcepNotFound : public XQException {
 public:
  explicit XQExcepNotFound(const char* format, ...) __attribute__((format(printf, 2, 3)));
  XQExcepNotFound(const XQExcepNotFound& other) noexcept;
  XQExcepNotFound& operator=(const XQExcepNotFound& other) noexcept;
  ~XQExcepNotFound() override;
};

/// A file can be found, but not opened, read or written.
class ZUML_API XQExcepIOError : public XQException {
 public:
  explicit XQExcepIOError(const char* format, ...) __attribute__((format(printf, 2, 3)));
  XQExcepIOError(const XQExcepIOError& other) noexcept;
  XQExcepIOError& operator=(const XQExcepIOError& other) noexcept;
  ~XQExcepIOError() override;
};
