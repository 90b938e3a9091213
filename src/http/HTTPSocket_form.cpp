// Form data as the content of a request.

#include "http/HTTPSocket.h"
#include "runtime/Text.h"

namespace {

// Replaces one character of kEscaped after another, "%" first, so that no escape is escaped again.
std::string _EncodeURLString(std::string text) {
  constexpr std::string_view kEscaped = "%&=,/\\][{}`~-_()*^$#!+;<>\r\n";
  for (const char c : kEscaped) {
    const std::string one(1, c);
    text = ReplaceAll(std::move(text), one, "%" + Right("00" + Hex(Asc(one)), 2));
  }
  return ReplaceAll(std::move(text), " ", "+");
}

}  // namespace

std::string HTTPSocket::EncodeFormData(const Dictionary& form) const {
  std::string out;
  for (std::int64_t i = 0; i < form.Count(); ++i) {
    const Variant& key = form.Key(i);
    out += "&" + _EncodeURLString(ToString(key)) + "=" + _EncodeURLString(ToString(form.Value(key)));
  }
  return Mid(out, 2);
}
