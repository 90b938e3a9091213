// Commands run by the shell.

#include "runtime/Shell.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "support/processes.h"
#include "support/rows.h"

namespace {

TEST(Shell, ExecuteWaitsAndGivesTheExitStatus) {
  // Descriptors that a child must not inherit, as a library or a terminal might leave them.
  ASSERT_NE(std::freopen("/proc/self/status", "r", stdin), nullptr);
  const int inheritable = ::open("/proc/self/status", O_RDONLY);
  Shell shell;
  for (const int timeOut : {-1, 30'000}) {
    shell.TimeOut = timeOut;
    for (const auto& row :
         Rows("0~true|7~exit 7|137~kill -9 $$|127~no-such-command-here|0~|0~[ $0 = sh ]|"
              "0~set -e; for i in 0 1 2; do [ $(readlink /proc/$$/fd/$i) = /dev/null ]; done|"
              "0~set -e; for i in 3 4 5 6; do [ ! -e /proc/$$/fd/$i ]; done|127~: " +
              std::string(200'000, 'x'))) {
      shell.Execute(row[1]);
      EXPECT_EQ(std::to_string(shell.ErrorCode()), row[0]) << row[1].substr(0, 80);
      EXPECT_FALSE(shell.IsRunning());
    }
  }
  ::close(inheritable);
  shell.TimeOut = 0;
  shell.Execute("sleep 600");
  EXPECT_EQ(shell.ErrorCode(), 137);
}

TEST(Shell, TheNextCommandAndTheDestructorKillAllThatACommandStarted) {
  for (const bool again : {true, false}) {
    NamedProcess child;
    {
      Shell shell;
      shell.Mode = 2;
      shell.Execute("sleep 600 & echo $! > '" + child.Path() + "'; wait");
      child.Await();
      EXPECT_TRUE(shell.IsRunning() && !child.EndsWithin(0));
      if (again) shell.Execute("exit 3");
      EXPECT_EQ(shell.ErrorCode(), 0) << "not that of the killed command";
      EXPECT_EQ(IsReadyWithin(again ? 30'000 : 0, shell.End()) && child.EndsWithin(30'000), again);
      EXPECT_EQ(shell.IsRunning(), !again);
      EXPECT_EQ(shell.ErrorCode(), again ? 3 : 0);
    }
    EXPECT_TRUE(child.EndsWithin(30'000));
  }
}

}  // namespace
