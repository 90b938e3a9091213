#include "runtime/exceptions.h"

#include <cstring>

std::string ErrorWords(int errorNumber) {
  const char* words = strerrordesc_np(errorNumber);
  return words ? words : "Unknown error " + std::to_string(errorNumber);
}

IOException::IOException(int errorNumber)
    : RuntimeException("IOException", ErrorWords(errorNumber)), errorNumber_(errorNumber) {}
