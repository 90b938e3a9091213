// Tables of short texts, each written as one string.
#pragma once

#include <string_view>
#include <vector>

#include "runtime/Text.h"

// "|" separates rows, "~" the fields of a row.
inline std::vector<StringArray> Rows(std::string_view table) {
  std::vector<StringArray> rows;
  for (const std::string& row : Split(table, "|")) rows.push_back(Split(row, "~"));
  return rows;
}
