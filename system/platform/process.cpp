#include "process.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>
#include <string>

extern char **environ;

namespace tovik::os {

bool ErrorText(int error, std::string &text) {
  char const *const description = ::strerrordesc_np(error);
  if (description == nullptr) return false;
  text = description;
  return true;
}

int StartCommand(char const *command, char const *argument) {
  if (command == nullptr || *command == '\0') return 0;
  // The shell puts the program in the background and ends at once; waiting
  // for the shell leaves the program to the system, which reaps it.
  std::string const script = std::string(command) + " \"$1\" &";
  char const *const args[] = {"sh", "-c", script.c_str(), "sh", argument != nullptr ? argument : "",
                              nullptr};
  pid_t pid = 0;
  if (::posix_spawn(&pid, "/bin/sh", nullptr, nullptr, const_cast<char *const *>(args), environ) != 0) {
    return 0;
  }
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return 1;
}

}  // namespace tovik::os
