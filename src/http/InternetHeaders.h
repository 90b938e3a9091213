// A collection of named header lines, for HTTP and e-mail. Names ignore case, repeated names keep their
// order, and folded lines are joined. The program itself only uses the HTTP form.
//
//   text   = line *( eol line )          eol is the first of CR LF, LF and CR that the text contains;
//   line   = name ":" blanks value       a line without a colon, such as a status line, is skipped
//          | ( " " | TAB ) more
//
// Every loop over headers yields at each of them. The headers of one name have the indexes 0, 1, 2, ...
// without a gap. A colon in a given name, and everything after it, is dropped.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "runtime/Dictionary.h"

class InternetHeaders {
 public:
  std::int64_t Count() const { return _Headers.Count(); }
  // Adds a header at the next index of its name.
  void AppendHeader(const std::string& name, const std::string& value);
  // Makes value the only one of name.
  void SetHeader(const std::string& name, const std::string& value);
  // Sets the value at this index; for a free index, appends it.
  void SetHeader(const std::string& name, const std::string& value, std::int64_t index);
  // Removes all headers of name, or one, and renumbers the later ones. An absent one is no error.
  void Delete(const std::string& name);
  void Delete(const std::string& name, std::int64_t index);
  // Source still gives the parsed text.
  void DeleteAllHeaders();

  // Name and value at a position among all headers, from 0; "" out of range.
  std::string Name(std::int64_t position) const;
  std::string Value(std::int64_t position) const;
  // The value at this index of its name, the first for an index below 1; "" if there is none.
  std::string Value(const std::string& name) const { return Value(name, 0); }
  std::string Value(const std::string& name, std::int64_t index) const;
  std::int64_t NameCount(const std::string& name) const;
  // All values of name joined by ", ".
  std::string CommaSeparatedValues(const std::string& name) const;
  // The parsed text, unaffected by later changes; the HTTP form if nothing was parsed.
  std::string Source() const;

  // key is a name, or a name, a colon and an index from 1.
  bool _HasHeader(const std::string& key) const { return _Headers.HasKey(key); }
  // Replaces all headers with those in text.
  void _ParseHeaders(const std::string& text);
  // Lines "Name: value", separated by CR LF.
  std::string _FormatHTTPHeaders() const;
  // The same in the traditional order of mail headers, without BCC.
  std::string _FormatEmailHeaders() const;
  static std::string _DetermineEOLCharacter(std::string_view text);

 private:
  // Removes the last of the `count` headers of name.
  void RemoveLast(const std::string& name, std::int64_t count);
  Dictionary _Headers;  // under "X", "X:1", "X:2", ...
  std::string _rawHeaders;
  // The number of headers of each name, which is in lower case: saves counting keys.
  std::unordered_map<std::string, std::int64_t> counts_;
};
