// Texts and tables that stand in files of tests/.
#pragma once

#include <gtest/gtest.h>

#include "runtime/Text.h"
#include "support/TemporaryFolder.h"

inline std::string PathOfTests(const std::string& name) { return RAVELYN_SOURCE_DIR "/tests/" + name; }

// The parts of the file `name` of tests/, without its last line end.
inline StringArray PartsOf(const std::string& name, const std::string& separator) {
  const std::string all = ReadFile(PathOfTests(name));
  EXPECT_FALSE(all.empty()) << name;
  return Split(all.substr(0, all.rfind('\n')), separator);
}

// With RAVELYN_KEEP in the environment, rewrites the file `name` of tests/ first.
inline void ExpectRecorded(const std::string& text, const std::string& name) {
  const std::string path = PathOfTests(name);
  if (std::getenv("RAVELYN_KEEP")) WriteFile(path, text);
  EXPECT_EQ(text, ReadFile(path));
}
