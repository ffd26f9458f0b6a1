#include "tests/platform/linux/web_server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <sstream>

namespace zelvo::tests {

WebServer::WebServer() {
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) {
    ADD_FAILURE() << "no pipes";
    return;
  }
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  std::string program = "python3";
  std::string script = ZELVO_WEB_SERVER;
  std::string folder = folder_.path();
  std::array<char*, 4> arguments = {program.data(), script.data(), folder.data(), nullptr};
  if (::posix_spawnp(&process_, "python3", &actions, nullptr, arguments.data(), environ) != 0) process_ = -1;
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(input[0]);
  ::close(output[1]);
  input_ = input[1];
  std::string line;
  for (char character = 0; ::read(output[0], &character, 1) == 1 && character != '\n';) line += character;
  ::close(output[0]);
  std::istringstream words(line);
  for (std::string word; words >> word;) {
    ports_[word.substr(0, word.find('='))] = std::stoi(word.substr(word.find('=') + 1));
  }
  EXPECT_TRUE(serves()) << "web_server.py did not start";
}

WebServer::~WebServer() {
  ::close(input_);
  if (process_ > 0) ::waitpid(process_, nullptr, 0);
}

std::string WebServer::address(const std::string& server, const std::string& path) const {
  const bool isPlain = server == "http" || server == "closed";
  return (isPlain ? "http" : "https") + std::string("://127.0.0.1:") + std::to_string(ports_.at(server)) + "/" + path;
}

}  // namespace zelvo::tests
