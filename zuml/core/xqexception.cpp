#include "zuml/core/xqexception.h"

#include "zuml/core/detail/formattext.h"

XQException::XQException() : text_("") {}

XQException::XQException(const char* format, ...) : text_("") {
  std::va_list arguments;
  va_start(arguments, format);
  SetMessage(format, arguments);
  va_end(arguments);
}

XQException::XQException(const XQException& other) noexcept = default;
XQException& XQException::operator=(const XQException& other) noexcept = default;
XQException::~XQException() = default;

const char* XQException::what() const noexcept { return text_.what(); }

void XQException::SetMessage(const char* format, std::va_list arguments) {
  text_ = std::runtime_error(zuml_detail::FormatText(format, arguments));
}

XQExcepNotFound::XQExcepNotFound(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  SetMessage(format, arguments);
  va_end(arguments);
}

XQExcepNotFound::XQExcepNotFound(const XQExcepNotFound& other) noexcept = default;
XQExcepNotFound& XQExcepNotFound::operator=(const XQExcepNotFound& other) noexcept = default;
XQExcepNotFound::~XQExcepNotFound() = default;

XQExcepIOError::XQExcepIOError(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  SetMessage(format, arguments);
  va_end(arguments);
}

XQExcepIOError::XQExcepIOError(const XQExcepIOError& other) noexcept = default;
XQExcepIOError& XQExcepIOError::operator=(const XQExcepIOError& other) noexcept = default;
XQExcepIOError::~XQExcepIOError() = default;
