// Sequences of operations on a collection of headers, compared with lists of values by name.

#include <map>

#include "http/InternetHeaders.h"
#include "runtime/Text.h"
#include "support/Harness.h"

namespace {

const std::string kNames[] = {"X", "x", "Received", "received", "To", "BCC", "Content-length", ""};

// The values of a name are compared after each operation, so more of them only take time.
constexpr int kMostOperations = 64;

using Model = std::map<std::string, std::vector<std::string>>;

void CheckName(const InternetHeaders& headers, const Model& model, const std::string& name) {
  const auto found = model.find(Lowercase(name));
  const std::vector<std::string> values = found == model.end() ? std::vector<std::string>() : found->second;
  HOLDS(headers.NameCount(name) == static_cast<std::int64_t>(values.size()));
  std::string joined;
  for (std::size_t i = 0; i < values.size(); ++i) {
    HOLDS(headers.Value(name, static_cast<std::int64_t>(i)) == values[i]);
    joined += (i ? ", " : "") + values[i];
  }
  HOLDS(headers.Value(name, static_cast<std::int64_t>(values.size()) + 1).empty());
  HOLDS(headers.CommaSeparatedValues(name) == joined);
  HOLDS(headers._HasHeader(name) == !values.empty());
}

void CheckCount(const InternetHeaders& headers, const Model& model) {
  std::size_t count = 0;
  for (const auto& [name, values] : model) count += values.size();
  HOLDS(headers.Count() == static_cast<std::int64_t>(count));
}

void Act(std::uint8_t what, const std::string& name, fuzz::Input& input, InternetHeaders& headers,
         Model& model) {
  const std::int64_t index = input.Byte() % 5;
  auto& values = model[Lowercase(name)];
  const std::size_t at = static_cast<std::size_t>(index);
  switch (what % 6) {
    case 0:
      values.push_back(input.Line());
      return headers.AppendHeader(name, values.back());
    case 1:
      values = {input.Line()};
      return headers.SetHeader(name, values.front());
    case 2: {
      const std::string value = input.Line();
      if (at < values.size()) {
        values[at] = value;
      } else {
        values.push_back(value);
      }
      return headers.SetHeader(name, value, index);
    }
    case 3:
      values.clear();
      return headers.Delete(name);
    case 4:
      if (at < values.size()) values.erase(values.begin() + static_cast<std::ptrdiff_t>(at));
      return headers.Delete(name, index);
    default:
      if (what != 5) return;
      model.clear();
      return headers.DeleteAllHeaders();
  }
}

// The formatted text is parsed as the same headers, unless a name or a value breaks its line or starts with
// what parsing drops.
void CheckFormat(const InternetHeaders& headers) {
  const std::string text = headers._FormatHTTPHeaders();
  bool plain = true;
  for (std::int64_t i = 0; i < headers.Count(); ++i) {
    const std::string value = headers.Value(i);
    const std::string name = headers.Name(i);
    plain = plain && (name + value).find_first_of("\r\n") == std::string::npos && LTrim(value) == value &&
            LTrim(name) == name;
  }
  InternetHeaders read;
  read._ParseHeaders(text);
  HOLDS(read.Source() == text || text.empty());
  if (!plain) return;
  HOLDS(read._FormatHTTPHeaders() == text);
  HOLDS(read.Count() == headers.Count());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  InternetHeaders headers;
  Model model;
  if (input.Byte() % 2 == 0) {
    for (int i = 0; i < kMostOperations && !input.IsOver(); ++i) {
      const std::uint8_t what = input.Byte();
      const std::string& name = kNames[input.Byte() % std::size(kNames)];
      Act(what, name, input, headers, model);
      CheckName(headers, model, name);
      CheckCount(headers, model);
    }
    for (const std::string& name : kNames) CheckName(headers, model, name);
    CheckFormat(headers);
    headers._FormatEmailHeaders();
    return 0;
  }
  // Parsing a text: one header for each line with a colon, after folded lines are joined.
  const std::string text = input.Rest();
  headers._ParseHeaders(text);
  HOLDS(headers.Source() == text || text.empty());
  std::int64_t byName = 0;
  for (std::int64_t i = 0; i < headers.Count(); ++i) {
    HOLDS(headers.Name(i).find(':') == std::string::npos);
    HOLDS(headers.NameCount(headers.Name(i)) >= 1);
    byName += headers.Value(headers.Name(i), 0) == headers.Value(i);
  }
  HOLDS(headers.Count() == 0 || byName >= 1);
  CheckFormat(headers);
  return 0;
}
