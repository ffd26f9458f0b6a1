#include "platform/linux/trusted_path.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

namespace zelvo::platform::linux_ {

namespace {

constexpr int kMaxLinks = 40;

bool onlyRootAndUserMayChange(const struct stat& status) {
  return (status.st_uid == 0 || status.st_uid == ::geteuid()) && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// `prefix` has no slash at its end. The root folder is the empty text here.
bool isAbove(std::string_view folder, std::string_view prefix) {
  return prefix.size() > folder.size() && prefix.starts_with(folder) && prefix[folder.size()] == '/';
}

bool isTrustedFolder(const std::string& folder, const std::string& prefix) {
  if (isAbove(folder, prefix)) return true;
  struct stat status {};
  return ::lstat(folder.empty() ? "/" : folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         onlyRootAndUserMayChange(status);
}

/// Puts the names of a path before those that are still to be gone.
void putBefore(std::deque<std::string>& names, std::string_view path) {
  std::deque<std::string> first;
  while (!path.empty()) {
    const std::size_t slash = std::min(path.find('/'), path.size());
    if (slash > 0) first.emplace_back(path.substr(0, slash));
    path.remove_prefix(std::min(slash + 1, path.size()));
  }
  names.insert(names.begin(), first.begin(), first.end());
}

}  // namespace

std::optional<std::string> realPath(const std::string& path) {
  struct Free {
    void operator()(char* text) const { std::free(text); }  // NOLINT: the library allocates with malloc
  };
  const std::unique_ptr<char, Free> real(::realpath(path.c_str(), nullptr));
  if (!real) return std::nullopt;
  return std::string(real.get());
}

std::optional<std::string> trustedPath(const std::string& path, const std::string& prefix) {
  if (!path.starts_with('/')) return std::nullopt;
  const std::string realPrefix = realPath(prefix).value_or("");
  std::deque<std::string> names;
  putBefore(names, path);
  std::string at;
  struct stat status {};
  for (int links = 0; !names.empty();) {
    const std::string name = names.front();
    names.pop_front();
    if (name == ".") continue;
    if (name == "..") {
      at.resize(at.empty() ? 0 : at.rfind('/'));
      continue;
    }
    if (!isTrustedFolder(at, realPrefix)) return std::nullopt;
    const std::string next = at + "/" + name;
    if (::lstat(next.c_str(), &status) != 0) return std::nullopt;
    if (!S_ISLNK(status.st_mode)) {
      at = next;
      continue;
    }
    std::error_code error;
    const std::string target = std::filesystem::read_symlink(next, error).string();
    if (error || ++links > kMaxLinks) return std::nullopt;
    if (target.starts_with('/')) at.clear();
    putBefore(names, target);
  }
  const bool isThere = ::lstat(at.empty() ? "/" : at.c_str(), &status) == 0;
  return isThere && onlyRootAndUserMayChange(status) ? std::optional(at.empty() ? "/" : at) : std::nullopt;
}

}  // namespace zelvo::platform::linux_
