#include "tests/universal/toolchain/host_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/files/file_system.h"

namespace tolvane::support {

namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;

fs::path buildFolder() {
  return fs::read_symlink("/proc/self/exe").parent_path();
}

}  // namespace

HostProgram::HostProgram() {
  constexpr auto everyone = fs::perms(0755);
  fs::permissions(folder_.path(), everyone);
  for (const auto& [from, to] : {std::pair("test_toolchain_host", "host"),
                                 std::pair("test_attacker", "attacker"),
                                 std::pair("test_attacker", "soffice"),
                                 std::pair("tolvane-confine", "tolvane-confine")}) {
    fs::copy_file(buildFolder() / from, folder_ / to);
    fs::permissions(folder_ / to, everyone);
  }
}

void HostProgram::addEngine(const std::string& name, const std::string& script) const {
  fs::permissions(folder_.write(name, "#!/bin/sh\n" + script), fs::perms(0755));
}

fs::path HostProgram::workspace(Identity identity) const {
  fs::path workspace = folder_ / FileSystem::newUuid();
  fs::create_directory(workspace);
  if (identity == Identity::ordinaryUser && ::geteuid() == 0 &&
      ::chown(workspace.c_str(), nobody, nobody) != 0) {
    throw std::runtime_error("cannot give the workspace away");
  }
  return workspace;
}

std::vector<std::string> HostProgram::command(Identity identity,
                                              const std::vector<std::string>& arguments) const {
  std::vector<std::string> command;
  if (identity == Identity::root && ::geteuid() != 0) {
    command = {"/usr/bin/unshare", "--map-root-user"};
  } else if (identity == Identity::ordinaryUser && ::geteuid() == 0) {
    const std::string user = std::to_string(nobody);
    command = {"/usr/bin/setpriv", "--reuid", user, "--regid", user, "--clear-groups"};
  }
  command.push_back((folder_ / "host").string());
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

std::string HostProgram::output(const std::vector<std::string>& command) {
  const TemporaryFolder folder;
  ::waitpid(start(command, folder / "output"), nullptr, 0);
  return contentOf(folder / "output");
}

pid_t HostProgram::start(const std::vector<std::string>& command, const fs::path& file) {
  posix_spawn_file_actions_t actions = {};
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(
      &actions, STDOUT_FILENO, file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ::posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  pid_t process = -1;
  const int code =
      ::posix_spawn(&process, arguments.front(), &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (code != 0) {
    throw std::runtime_error("cannot start " + command.front());
  }
  return process;
}

}  // namespace tolvane::support
