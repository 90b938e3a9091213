// A client, a loopback server and a folder for downloads.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "http/HTTPSocket.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"

constexpr std::int64_t kPatience = 60;  // seconds; no test takes as long
using Lines = std::vector<std::string>;

struct HTTP : testing::Test {
  FolderItemPtr File(const std::string& name) { return std::make_shared<FolderItem>(folder / name); }
  std::string Url(const std::string& path) { return "http://" + server.Host() + path; }
  std::string HostLine() { return "Host: " + server.Host(); }

  LoopbackServer server;
  HTTPSocket socket;
  TemporaryFolder folder;
};
