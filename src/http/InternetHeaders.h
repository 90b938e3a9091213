// A collection of named header lines, for HTTP and for e-mail. Names are matched without regard to
// case, repeated names are kept in order, and folded lines are joined.
//
//   text   = line *( eol line )          eol is CR LF, LF or CR, whichever the text holds first
//   line   = name ":" blanks value       in that order of preference; a line without a colon,
//          | ( " " | TAB ) more          such as a status line, is passed over
//
// What walks the headers yields at each of them. The headers of one name have the indexes 0, 1, 2, ...
// without a gap. A name holds no colon; what follows one in a given name is dropped.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "runtime/Dictionary.h"

class InternetHeaders {
 public:
  std::int64_t Count() const { return _Headers.Count(); }
  // One more header of this name, at its next index.
  void AppendHeader(const std::string& name, const std::string& value);
  // The one value of name from now on.
  void SetHeader(const std::string& name, const std::string& value);
  // The value at this index; an index that is still free becomes the next one.
  void SetHeader(const std::string& name, const std::string& value, std::int64_t index);
  // Removes all headers of name, or one, and moves the later ones down. Absent ones do no harm.
  void Delete(const std::string& name);
  void Delete(const std::string& name, std::int64_t index);
  // The text that was parsed stays the Source.
  void DeleteAllHeaders();

  // Name and value at a position over all names, from 0; "" beyond the end.
  std::string Name(std::int64_t position) const;
  std::string Value(std::int64_t position) const;
  // An index below 1 is the first of its name; "" if there is none.
  std::string Value(const std::string& name) const { return Value(name, 0); }
  std::string Value(const std::string& name, std::int64_t index) const;
  std::int64_t NameCount(const std::string& name) const;
  // All values of name joined by ", ".
  std::string CommaSeparatedValues(const std::string& name) const;
  // The text that was parsed, also after later changes; for a collection built by hand its HTTP form.
  std::string Source() const;

  // key is a name, or a name, a colon and an index from 1.
  bool _HasHeader(const std::string& key) const { return _Headers.HasKey(key); }
  // Replaces the contents by what text holds.
  void _ParseHeaders(const std::string& text);
  // Lines "Name: value" with CR LF between them and none at the end.
  std::string _FormatHTTPHeaders() const;
  // The same in the traditional order of mail headers, without BCC.
  std::string _FormatEmailHeaders() const;
  static std::string _DetermineEOLCharacter(std::string_view text);

 private:
  // Of the count that it has.
  void RemoveLast(const std::string& name, std::int64_t count);
  Dictionary _Headers;  // under "X", "X:1", "X:2", ...
  std::string _rawHeaders;
  // How many headers a name has, by its lower-case form: what the keys tell, without the walk.
  std::unordered_map<std::string, std::int64_t> counts_;
};
