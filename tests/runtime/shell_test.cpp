// Commands run by the shell.

#include "runtime/Shell.h"

#include <gtest/gtest.h>

#include "support/processes.h"
#include "support/rows.h"

namespace {

TEST(Shell, ExecuteWaitsAndGivesTheExitStatus) {
  Shell shell;
  for (const auto& row : Rows("0~true|7~exit 7|137~kill -9 $$|127~no-such-command-here|0~|0~set -e; for i in "
                              "0 1 2; do [ $(readlink /proc/$$/fd/$i) = /dev/null ]; done")) {
    shell.Execute(row[1]);
    EXPECT_EQ(std::to_string(shell.ErrorCode()), row[0]) << row[1];
    EXPECT_FALSE(shell.IsRunning());
  }
  shell.TimeOut = 50;
  shell.Execute("sleep 600");
  EXPECT_EQ(shell.ErrorCode(), 137);
}

TEST(Shell, InteractiveExecuteReturnsAtOnceAndItsDestructorKillsTheChildren) {
  NamedProcess child;
  {
    Shell shell;
    shell.Mode = 2;
    shell.Execute("sleep 600 & echo $! > '" + child.Path() + "'; wait");
    EXPECT_TRUE(shell.IsRunning());
    child.Await();
    EXPECT_FALSE(child.EndsWithin(0));
  }
  EXPECT_TRUE(child.EndsWithin(30'000));
  Shell quick;
  quick.Mode = 2;
  quick.Execute("exit 3");
  EXPECT_TRUE(IsReadyWithin(30'000, quick.End()));
  EXPECT_FALSE(quick.IsRunning());
  EXPECT_EQ(quick.ErrorCode(), 3);
  quick.Execute("sleep 600");
  EXPECT_EQ(quick.ErrorCode(), 0) << "not the previous command's";
}

}  // namespace
