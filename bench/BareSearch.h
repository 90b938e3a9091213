// PCRE2 called for each text with nothing around it: what the word search can cost at least with
// that library.
#pragma once

#include <memory>
#include <string>
#include <vector>

class BareSearch {
 public:
  // Caseless, texts are taken to be UTF-8. checked lets the library look at each text first.
  BareSearch(const std::string& pattern, bool checked);
  ~BareSearch();
  std::size_t Hits(const std::vector<std::string>& texts);

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
  bool checked_;
};
