// PCRE2 alone, called for each text: the least that the word search can cost with that library.
#pragma once

#include <memory>
#include <string>
#include <vector>

class BareSearch {
 public:
  // Ignores case. checked: the library validates the UTF-8 of each text first; else it must be valid.
  BareSearch(const std::string& pattern, bool checked);
  ~BareSearch();
  std::size_t Hits(const std::vector<std::string>& texts);

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
  bool checked_;
};
