#include "http/InternetHeaders.h"

#include "runtime/Application.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"

namespace {

constexpr std::string_view kCRLF = "\r\n";

std::string PlainName(const std::string& name) { return NthField(name, ":", 1); }

std::string KeyOf(const std::string& name, std::int64_t index) {
  return index == 0 ? name : name + ":" + Str(index);
}

}  // namespace

void InternetHeaders::AppendHeader(const std::string& name, const std::string& value) {
  const std::string plain = PlainName(name);
  _Headers.SetValue(KeyOf(plain, counts_[Lowercase(plain)]++), value);
}

void InternetHeaders::SetHeader(const std::string& name, const std::string& value) {
  const std::string plain = PlainName(name);
  if (NameCount(plain) > 1) Delete(plain);
  _Headers.SetValue(plain, value);
  counts_[Lowercase(plain)] = 1;
}

void InternetHeaders::SetHeader(const std::string& name, const std::string& value, std::int64_t index) {
  const std::string key = KeyOf(PlainName(name), index);
  _Headers.HasKey(key) ? _Headers.SetValue(key, value) : AppendHeader(name, value);
}

// From the last to the first: there is no gap while a yield lets others read the headers.
void InternetHeaders::Delete(const std::string& name) {
  while (const std::int64_t count = NameCount(name)) {
    RemoveLast(name, count);
    RuntimeBackgroundTask();
  }
}

void InternetHeaders::RemoveLast(const std::string& name, std::int64_t count) {
  _Headers.Remove(KeyOf(name, count - 1));
  if (--counts_[Lowercase(name)] == 0) counts_.erase(Lowercase(name));
}

void InternetHeaders::Delete(const std::string& name, std::int64_t index) {
  const std::int64_t count = NameCount(name);
  if (index < 0 || index >= count) return;
  for (std::int64_t next = index + 1; next < count; ++next) {
    _Headers.SetValue(KeyOf(name, next - 1), _Headers.Value(KeyOf(name, next)));
    RuntimeBackgroundTask();
  }
  RemoveLast(name, count);
}

void InternetHeaders::DeleteAllHeaders() {
  _Headers.Clear();
  counts_.clear();
}

std::string InternetHeaders::Name(std::int64_t position) const {
  const bool isThere = position >= 0 && position < Count();
  return isThere ? PlainName(ToString(_Headers.Key(position))) : "";
}

std::string InternetHeaders::Value(std::int64_t position) const {
  const bool isThere = position >= 0 && position < Count();
  return isThere ? ToString(_Headers.Value(_Headers.Key(position))) : "";
}

std::string InternetHeaders::Value(const std::string& name, std::int64_t index) const {
  return ToString(_Headers.Lookup(KeyOf(name, index < 1 ? 0 : index), ""));
}

std::int64_t InternetHeaders::NameCount(const std::string& name) const {
  const auto count = counts_.find(Lowercase(name));
  return count == counts_.end() ? 0 : count->second;
}

std::string InternetHeaders::CommaSeparatedValues(const std::string& name) const {
  std::string values;
  for (std::int64_t i = 0; i < NameCount(name); ++i) {
    values += (i ? ", " : "") + Value(name, i);
    RuntimeBackgroundTask();
  }
  return values;
}

std::string InternetHeaders::Source() const {
  return _rawHeaders.empty() ? _FormatHTTPHeaders() : _rawHeaders;
}

void InternetHeaders::_ParseHeaders(const std::string& text) {
  _rawHeaders = text;
  const std::string eol = _DetermineEOLCharacter(text);
  DeleteAllHeaders();
  const std::string unfolded = ReplaceAll(ReplaceAll(text, eol + " ", " "), eol + Chr(9), " ");
  for (const std::string& line : Split(unfolded, eol)) {
    const std::int64_t colon = InStr(0, line, ":");
    if (colon > 0) AppendHeader(Left(line, colon - 1), LTrim(Mid(line, colon + 1)));
    RuntimeBackgroundTask();
  }
}

std::string InternetHeaders::_FormatHTTPHeaders() const {
  std::string out;
  for (std::int64_t i = 0; i < Count(); ++i) {
    out.append(kCRLF).append(Name(i)).append(": ").append(Value(i));
    RuntimeBackgroundTask();
  }
  return Mid(out, LenB(kCRLF) + 1);
}

std::string InternetHeaders::_FormatEmailHeaders() const {
  constexpr std::string_view kPlaced = ":Date:Subject:From:To:CC:BCC:Received:Return-Path:";
  std::string out;
  const auto line = [&](const std::string& name, const std::string& value) {
    out.append(kCRLF).append(name).append(": ").append(value);
  };
  if (_HasHeader("Return-Path")) line("Return-Path", Value("Return-Path"));
  for (std::int64_t i = 0; i < NameCount("Received"); ++i) {
    line("Received", Value("Received", i));
    RuntimeBackgroundTask();
  }
  for (const char* name : {"Date", "Subject", "From"}) {
    if (_HasHeader(name)) line(name, Value(name));
  }
  for (const char* name : {"To", "CC"}) {
    if (NameCount(name) >= 1) line(name, CommaSeparatedValues(name));
  }
  for (std::int64_t i = 0; i < Count(); ++i) {
    if (InStr(0, kPlaced, ":" + Name(i) + ":") == 0) line(Name(i), Value(i));
    RuntimeBackgroundTask();
  }
  return Mid(out, LenB(kCRLF) + 1);
}

std::string InternetHeaders::_DetermineEOLCharacter(std::string_view text) {
  for (const std::string_view eol : {kCRLF, std::string_view("\n"), std::string_view("\r")}) {
    if (text.find(eol) != std::string_view::npos) return std::string(eol);
  }
  return std::string(kCRLF);
}
