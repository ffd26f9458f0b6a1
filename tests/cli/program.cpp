#include "tests/cli/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace zelvo::tests {

namespace {

constexpr int kPatience = 60000;  // milliseconds until a test gives up

struct Ends {
  int reader = -1;
  int writer = -1;
};

Ends makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) ADD_FAILURE() << "no pipe";
  return {ends[0], ends[1]};
}

Ends makeTerminal() {
  const int reader = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (reader < 0 || ::grantpt(reader) != 0 || ::unlockpt(reader) != 0) ADD_FAILURE() << "no terminal";
  std::array<char, 100> name{};
  ::ptsname_r(reader, name.data(), name.size());
  return {reader, ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC)};
}

/// Adds what can be read; false, and the stream is closed, at its end.
bool readInto(std::string& text, int& stream) {
  std::array<char, 16384> buffer{};
  const ssize_t count = ::read(stream, buffer.data(), buffer.size());
  if (count > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
  }
  if (count < 0 && errno == EINTR) return true;
  ::close(std::exchange(stream, -1));  // a terminal whose other end is gone answers an error
  return false;
}

}  // namespace

Program::Program(const std::vector<std::string>& command, ErrorStream error) {
  const Ends out = makePipe();
  const Ends err = error == ErrorStream::pipe ? makePipe() : makeTerminal();
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, out.writer, STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, err.writer, STDERR_FILENO);
  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  sigset_t all;
  sigset_t none;
  sigfillset(&all);
  sigemptyset(&none);
  ::posix_spawnattr_setsigdefault(&attributes, &all);
  ::posix_spawnattr_setsigmask(&attributes, &none);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

  std::vector<std::string> words = command;
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  if (::posix_spawnp(&id_, pointers[0], &actions, &attributes, pointers.data(), environ) != 0) {
    id_ = -1;
    ended_.exit = 127;  // as a shell says it
  }
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(out.writer);
  ::close(err.writer);
  outStream_ = out.reader;
  errStream_ = err.reader;
}

Program::~Program() {
  if (id_ > 0) {
    ::kill(id_, SIGKILL);
    ::waitpid(id_, nullptr, 0);
  }
  if (outStream_ >= 0) ::close(outStream_);
  if (errStream_ >= 0) ::close(errStream_);
}

bool Program::readSome() {
  if (outStream_ < 0 && errStream_ < 0) return false;
  std::array<pollfd, 2> streams = {pollfd{outStream_, POLLIN, 0}, pollfd{errStream_, POLLIN, 0}};
  const int ready = ::poll(streams.data(), streams.size(), kPatience);
  if (ready == 0) {
    ADD_FAILURE() << "the program says nothing and does not end";
    send(SIGKILL);
  }
  if (streams[0].revents != 0) readInto(ended_.out, outStream_);
  if (streams[1].revents != 0) readInto(ended_.err, errStream_);
  return true;
}

bool Program::waitForError(const std::string& text) {
  while (ended_.err.find(text) == std::string::npos) {
    if (!readSome()) return false;
  }
  return true;
}

void Program::send(int signal) const {
  if (id_ > 0) ::kill(id_, signal);
}

Ended Program::wait() {
  while (readSome()) {
  }
  int status = 0;
  if (id_ > 0 && ::waitpid(std::exchange(id_, -1), &status, 0) > 0) {
    if (WIFEXITED(status)) ended_.exit = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) ended_.signal = WTERMSIG(status);
  }
  return ended_;
}

Ended run(const std::vector<std::string>& command) { return Program(command).wait(); }

std::vector<std::string> zelvoAvi(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {ZELVO_AVI};
  for (const std::string& argument : arguments) command.push_back(argument);
  return command;
}

Ended runZelvoAvi(const std::vector<std::string>& arguments) { return run(zelvoAvi(arguments)); }

FolderWatch::FolderWatch(const std::string& folder) : stream_(::inotify_init1(IN_CLOEXEC)) {
  if (stream_ < 0 || ::inotify_add_watch(stream_, folder.c_str(), IN_CREATE) < 0) ADD_FAILURE() << "no watch";
}

FolderWatch::~FolderWatch() { ::close(stream_); }

bool FolderWatch::waitFor(const std::string& beginning) const {
  alignas(inotify_event) std::array<char, 8192> buffer{};
  for (;;) {
    pollfd stream{stream_, POLLIN, 0};
    if (::poll(&stream, 1, kPatience) <= 0) return false;
    const ssize_t count = ::read(stream_, buffer.data(), buffer.size());
    for (ssize_t at = 0; at < count;) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + at, sizeof(event));
      const std::string_view name(buffer.data() + at + sizeof(event), event.len);
      if (name.starts_with(beginning)) return true;
      at += static_cast<ssize_t>(sizeof(event) + event.len);
    }
  }
}

}  // namespace zelvo::tests
