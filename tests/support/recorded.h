// Texts that are compared with files in tests/.
#pragma once

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

// With RAVELYN_KEEP in the environment, rewrites the file `name` of tests/ first.
inline void ExpectRecorded(const std::string& text, const std::string& name) {
  const std::string path = RAVELYN_SOURCE_DIR "/tests/" + name;
  if (std::getenv("RAVELYN_KEEP")) WriteFile(path, text);
  EXPECT_EQ(text, ReadFile(path));
}
