// Exceptions of the runtime. One that leaves an event handler ends that handler only, and its kind and
// message are shown (see Application.h).
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

class RuntimeException : public std::runtime_error {
 public:
  RuntimeException(std::string kind, const std::string& message)
      : std::runtime_error(message), kind_(std::move(kind)) {}
  // The name of the class, as the user sees it.
  const std::string& Kind() const { return kind_; }

 private:
  std::string kind_;
};

// A member of a nil object was used.
struct NilObjectException : RuntimeException {
  explicit NilObjectException(const std::string& message) : RuntimeException("NilObjectException", message) {}
};

// An index is outside its array, list or block of bytes.
struct OutOfBoundsException : RuntimeException {
  explicit OutOfBoundsException(const std::string& message)
      : RuntimeException("OutOfBoundsException", message) {}
};

// A file could not be created, written or replaced. ErrorNumber is the errno.
class IOException : public RuntimeException {
 public:
  explicit IOException(int errorNumber);
  int ErrorNumber() const { return errorNumber_; }

 private:
  int errorNumber_;
};

// A pattern is not a valid regular expression. Position counts characters from 1; the message is the reason
// alone, in plain English.
class RegExSearchPatternException : public RuntimeException {
 public:
  RegExSearchPatternException(const std::string& reason, std::int64_t position)
      : RuntimeException("RegExSearchPatternException", reason), position_(position) {}
  std::int64_t Position() const { return position_; }

 private:
  std::int64_t position_;
};

// A valid pattern would take too long on this target.
struct RegExMatchLimitException : RuntimeException {
  explicit RegExMatchLimitException(const std::string& reason)
      : RuntimeException("RegExMatchLimitException", reason) {}
};

// The system's description of an errno, such as "No space left on device", in English in every locale.
std::string ErrorWords(int errorNumber);
