#include "runtime/Dictionary.h"

#include "runtime/Numbers.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"

std::string ToString(const Variant& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return Str(*number);
  return std::get<std::string>(value);
}

Dictionary::Dictionary(const std::vector<std::pair<Variant, Variant>>& pairs) {
  for (const auto& [key, value] : pairs) SetValue(key, value);
}

// The prefix distinguishes the Integer 5 from the String "5".
std::string Dictionary::Folded(const Variant& key) {
  if (const auto* text = std::get_if<std::string>(&key)) return "s" + Lowercase(*text);
  return "i" + ToString(key);
}

const Variant& Dictionary::Key(std::int64_t index) const {
  Compact();
  if (index < 0 || index >= Count()) throw OutOfBoundsException("The dictionary has no key at that index.");
  return entries_[static_cast<std::size_t>(index)]->first;
}

const Variant& Dictionary::Value(const Variant& key) const {
  const auto place = places_.find(Folded(key));
  if (place == places_.end()) throw OutOfBoundsException("The dictionary has no key " + ToString(key) + ".");
  return entries_[place->second]->second;
}

Variant Dictionary::Lookup(const Variant& key, const Variant& fallback) const {
  const auto place = places_.find(Folded(key));
  return place == places_.end() ? fallback : entries_[place->second]->second;
}

void Dictionary::SetValue(const Variant& key, Variant value) {
  const auto [place, isNew] = places_.try_emplace(Folded(key), entries_.size());
  if (isNew) {
    entries_.emplace_back(std::in_place, key, std::move(value));
  } else {
    entries_[place->second]->second = std::move(value);
  }
}

void Dictionary::Remove(const Variant& key) {
  const auto place = places_.find(Folded(key));
  if (place == places_.end()) return;
  entries_[place->second].reset();
  places_.erase(place);
}

void Dictionary::Compact() const {
  if (entries_.size() == places_.size()) return;
  std::erase(entries_, std::nullopt);
  for (std::size_t i = 0; i < entries_.size(); ++i) places_[Folded(entries_[i]->first)] = i;
}
