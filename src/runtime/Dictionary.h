// A map whose keys and values are each a String or an Integer. String keys ignore the case of ASCII letters.
// Key(index) follows the order of insertion; a write to an existing key keeps its position and its spelling.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

using Variant = std::variant<std::string, std::int64_t>;
// The value as a String: an Integer in decimal digits.
std::string ToString(const Variant& value);

class Dictionary {
 public:
  explicit Dictionary(const std::vector<std::pair<Variant, Variant>>& pairs = {});

  std::int64_t Count() const { return static_cast<std::int64_t>(places_.size()); }
  bool HasKey(const Variant& key) const { return places_.contains(Folded(key)); }
  // index counts from 0. OutOfBoundsException for an absent index.
  const Variant& Key(std::int64_t index) const;
  // OutOfBoundsException for an absent key; Lookup gives fallback instead.
  const Variant& Value(const Variant& key) const;
  Variant Lookup(const Variant& key, const Variant& fallback) const;
  void SetValue(const Variant& key, Variant value);
  // An absent key is no error.
  void Remove(const Variant& key);
  void Clear() { *this = Dictionary(); }

 private:
  using Entry = std::optional<std::pair<Variant, Variant>>;
  static std::string Folded(const Variant& key);
  void Compact() const;

  // Remove leaves a gap, which the next look-up by index closes.
  mutable std::vector<Entry> entries_;
  mutable std::unordered_map<std::string, std::size_t> places_;
};
