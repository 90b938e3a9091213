// What the runtime raises. An exception that no handler catches ends that handler only: the
// dispatch of events shows its kind and its words (see Application.h).
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

class RuntimeException : public std::runtime_error {
 public:
  RuntimeException(std::string kind, const std::string& words)
      : std::runtime_error(words), kind_(std::move(kind)) {}
  // The name of the exception's class, as a person is shown it.
  const std::string& Kind() const { return kind_; }

 private:
  std::string kind_;
};

// A member access on an object that is not there.
class NilObjectException : public RuntimeException {
 public:
  explicit NilObjectException(const std::string& words) : RuntimeException("NilObjectException", words) {}
};

// An index outside an array, a list or a block of bytes.
class OutOfBoundsException : public RuntimeException {
 public:
  explicit OutOfBoundsException(const std::string& words) : RuntimeException("OutOfBoundsException", words) {}
};

// A file could not be made, written or put in its place. ErrorNumber is the system's errno.
class IOException : public RuntimeException {
 public:
  explicit IOException(int errorNumber);
  int ErrorNumber() const { return errorNumber_; }

 private:
  int errorNumber_;
};

// A pattern that is no regular expression. Position counts characters from 1; the words are
// the reason alone, in plain English.
class RegExSearchPatternException : public RuntimeException {
 public:
  RegExSearchPatternException(const std::string& reason, std::int64_t position)
      : RuntimeException("RegExSearchPatternException", reason), position_(position) {}
  std::int64_t Position() const { return position_; }

 private:
  std::int64_t position_;
};

// A pattern that is valid but would take practically forever on this target.
class RegExMatchLimitException : public RuntimeException {
 public:
  explicit RegExMatchLimitException(const std::string& reason)
      : RuntimeException("RegExMatchLimitException", reason) {}
};

// The system's words for an errno, such as "No space left on device"; never locale dependent.
std::string ErrorWords(int errorNumber);
