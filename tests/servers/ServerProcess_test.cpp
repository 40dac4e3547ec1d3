#include "servers/ServerProcess.h"

#include <csignal>
#include <stdexcept>

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vlclientui::test {
namespace {

// A shell that is ready at once; more is what it does then.
std::vector<std::string> shell(const std::string& more) {
  return {"/bin/sh", "-c", "echo ready 4711; " + more};
}

TEST(ServerProcess, TellsThePortThatTheServerTold) {
  const ServerProcess server(shell("sleep 60"));
  EXPECT_EQ(server.port(), 4711);
  EXPECT_EQ(server.address(), "http://127.0.0.1:4711");
}

TEST(ServerProcess, RefusesAServerThatEndsBeforeItIsReady) {
  EXPECT_THROW(ServerProcess({"/bin/sh", "-c", "exit 1"}), std::runtime_error);
  EXPECT_THROW(ServerProcess({"/nowhere/server"}), std::runtime_error);
}

TEST(ServerProcess, EndsEveryProcessOfTheGroup) {
  pid_t group = 0;
  {
    const ServerProcess server(shell("sleep 60 & sleep 60 & wait"));
    group = server.group();
    EXPECT_TRUE(hasMembers(group));
  }
  EXPECT_FALSE(hasMembers(group));
}

TEST(ServerProcess, EndsOneThatIgnoresToBeTold) {
  pid_t group = 0;
  {
    const ServerProcess server({"/bin/sh", "-c", "trap '' TERM; echo ready 1; while :; do sleep 1; done"});
    group = server.group();
  }
  EXPECT_FALSE(hasMembers(group));
}

// The program that started the server dies as by a crash; the group comes to light through a pipe.
pid_t groupOfAProgramThatDies() {
  int ends[2] = {};
  EXPECT_EQ(pipe(ends), 0);
  const pid_t program = fork();
  if (program == 0) {
    const ServerProcess server(shell("exec sleep 60"));
    const pid_t group = server.group();
    if (write(ends[1], &group, sizeof group) == sizeof group) raise(SIGKILL);
    _exit(1);
  }
  pid_t group = 0;
  EXPECT_EQ(read(ends[0], &group, sizeof group), static_cast<ssize_t>(sizeof group));
  waitpid(program, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  return group;
}

TEST(ServerProcess, DiesWithTheProgramThatStartedIt) {
  // What loses its parent comes to this process, which so learns that it ended.
  ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
  const pid_t group = groupOfAProgramThatDies();
  EXPECT_EQ(waitpid(group, nullptr, 0), group);
  EXPECT_FALSE(hasMembers(group));
}

}  // namespace
}  // namespace vlclientui::test
