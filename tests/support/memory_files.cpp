#include "tests/support/memory_files.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace zelvo::tests {

using platform::Bytes;
using platform::IoResult;

namespace {

/// Copies the part of `content`, which lies at `contentOffset`, that falls into `into` at `offset`.
void overlay(std::uint64_t offset, std::span<std::byte> into, std::uint64_t contentOffset, const Bytes& content) {
  const std::uint64_t start = std::max(offset, contentOffset);
  const std::uint64_t end = std::min(offset + into.size(), contentOffset + content.size());
  if (start >= end) return;
  std::copy_n(content.begin() + static_cast<std::ptrdiff_t>(start - contentOffset), end - start,
              into.begin() + static_cast<std::ptrdiff_t>(start - offset));
}

class MemoryReadableFile final : public platform::ReadableFile {
 public:
  explicit MemoryReadableFile(std::shared_ptr<MemoryFile> file) : file_(std::move(file)) {}

  IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (file_->onRead) file_->onRead(offset, into.size());
    if (file_->beforeBadRead && isBad(offset, into.size())) file_->beforeBadRead();
    const std::lock_guard lock(file_->mutex);
    ++file_->reads;
    file_->largestRead = std::max<std::uint64_t>(file_->largestRead, into.size());
    if (offset >= file_->size || into.empty()) return {};
    IoResult result{static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), file_->size - offset)), {}};
    if (touchesBad(offset, result.count)) {
      result.count = offset >= file_->badReadStart ? 0 : static_cast<std::size_t>(file_->badReadStart - offset);
      result.error = file_->readError;
    }
    into = into.first(result.count);
    std::fill(into.begin(), into.end(), std::byte{0});
    overlay(offset, into, 0, file_->bytes);
    for (const auto& [start, content] : file_->islands) overlay(offset, into, start, content);
    return result;
  }

  IoResult readScattered(std::uint64_t offset, std::span<const std::span<std::byte>> pieces) override {
    Bytes together;
    for (const std::span<std::byte> piece : pieces) together.resize(together.size() + piece.size());
    const IoResult result = readAt(offset, together);
    std::span<const std::byte> left = std::span(together).first(result.count);
    for (const std::span<std::byte> piece : pieces) {
      const std::size_t step = std::min(piece.size(), left.size());
      std::copy_n(left.begin(), step, piece.begin());
      left = left.subspan(step);
    }
    return result;
  }

  std::uint64_t size() override {
    const std::lock_guard lock(file_->mutex);
    return file_->size;
  }

 private:
  [[nodiscard]] bool isBad(std::uint64_t offset, std::size_t size) const {
    const std::lock_guard lock(file_->mutex);
    return touchesBad(offset, size);
  }
  [[nodiscard]] bool touchesBad(std::uint64_t offset, std::size_t size) const {
    return offset < file_->badReadEnd && offset + size > file_->badReadStart;
  }

  std::shared_ptr<MemoryFile> file_;
};

class MemoryWritableFile final : public platform::WritableFile {
 public:
  explicit MemoryWritableFile(std::shared_ptr<MemoryFile> file) : file_(std::move(file)) {}

  IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) override {
    if (file_->onWrite) file_->onWrite(offset, from.size());
    const std::lock_guard lock(file_->mutex);
    IoResult result{from.size(), {}};
    if (offset + from.size() > file_->badWriteFrom) {
      result.count = offset >= file_->badWriteFrom ? 0 : static_cast<std::size_t>(file_->badWriteFrom - offset);
      result.error = file_->writeError;
    }
    if (result.count == 0) return result;
    if (file_->bytes.size() < offset + result.count)
      file_->bytes.resize(static_cast<std::size_t>(offset) + result.count);
    std::copy_n(from.begin(), result.count, file_->bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    file_->size = std::max<std::uint64_t>(file_->size, file_->bytes.size());
    return result;
  }
  std::error_code reserve(std::uint64_t size) override {
    const std::lock_guard lock(file_->mutex);
    if (file_->reserveError) return file_->reserveError;
    file_->bytes.resize(static_cast<std::size_t>(size));
    file_->size = size;
    return {};
  }
  std::error_code truncate(std::uint64_t size) override {
    const std::lock_guard lock(file_->mutex);
    file_->bytes.resize(static_cast<std::size_t>(size));
    file_->size = size;
    return {};
  }
  std::error_code beginWriteOut(std::uint64_t offset, std::uint64_t size) override {
    const std::lock_guard lock(file_->mutex);
    if (offset == file_->sentUpTo && offset + size <= file_->bytes.size()) file_->sentUpTo += size;
    return file_->sendError;
  }
  std::error_code flush() override { return {}; }
  std::error_code close() override { return std::exchange(file_->closeError, {}); }

 private:
  std::shared_ptr<MemoryFile> file_;
};

}  // namespace

MemoryFile& MemoryFiles::put(const std::string& path, Bytes bytes) {
  auto file = std::make_shared<MemoryFile>();
  file->size = bytes.size();
  file->bytes = std::move(bytes);
  const std::lock_guard lock(mutex_);
  return *(files_[path] = std::move(file));
}

MemoryFile& MemoryFiles::putSparse(const std::string& path, std::uint64_t size) {
  MemoryFile& file = put(path, {});
  file.size = size;
  return file;
}

std::shared_ptr<MemoryFile> MemoryFiles::find(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(path);
  return found == files_.end() ? nullptr : found->second;
}

std::error_code MemoryFiles::refusal(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const auto found = refused_.find(path);
  return found == refused_.end() ? std::error_code{} : found->second;
}

bool MemoryFiles::has(const std::string& path) const { return find(path) != nullptr; }
MemoryFile& MemoryFiles::at(const std::string& path) { return *find(path); }
Bytes MemoryFiles::content(const std::string& path) const {
  const auto file = find(path);
  if (!file) return {};
  const std::lock_guard lock(file->mutex);
  return file->bytes;
}
void MemoryFiles::refuse(const std::string& path, std::error_code error) {
  const std::lock_guard lock(mutex_);
  refused_[path] = error;
}

platform::Opened<platform::ReadableFile> MemoryFiles::openForReading(const std::string& path) {
  if (const std::error_code error = refusal(path)) return {nullptr, error};
  auto file = find(path);
  if (!file) return {nullptr, std::make_error_code(std::errc::no_such_file_or_directory)};
  return {std::make_unique<MemoryReadableFile>(std::move(file)), {}};
}

platform::Opened<platform::WritableFile> MemoryFiles::openForWriting(const std::string& path) {
  if (onTouch) onTouch("openForWriting(" + path + ")");
  if (const std::error_code error = refusal(path)) return {nullptr, error};
  auto file = find(path);
  if (!file) return {nullptr, std::make_error_code(std::errc::no_such_file_or_directory)};
  return {std::make_unique<MemoryWritableFile>(std::move(file)), {}};
}

std::optional<platform::FileAttributes> MemoryFiles::attributes(const std::string& path) {
  const auto file = find(path);
  if (!file) return std::nullopt;
  const std::lock_guard lock(file->mutex);
  return platform::FileAttributes{platform::FileAttributes::Kind::regularFile, file->size, 1,
                                  std::hash<std::string>{}(path)};
}
std::optional<platform::FileAttributes> MemoryFiles::attributesFollowingLinks(const std::string& path) {
  return attributes(path);
}
std::optional<std::uint64_t> MemoryFiles::freeSpace(const std::string&) { return space; }

std::error_code MemoryFiles::createFile(const std::string& path) {
  if (onTouch) onTouch("createFile(" + path + ")");
  if (const std::error_code error = refusal(path)) return error;
  if (const auto file = find(path)) {
    const std::lock_guard lock(file->mutex);
    file->bytes.clear();
    file->size = 0;
    return {};
  }
  put(path, {});
  return {};
}
std::error_code MemoryFiles::createFolder(const std::string& path) { return refusal(path); }
std::error_code MemoryFiles::rename(const std::string& from, const std::string& to) {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(from);
  if (found == files_.end()) return std::make_error_code(std::errc::no_such_file_or_directory);
  auto file = found->second;
  files_.erase(found);
  files_[to] = std::move(file);
  return {};
}
std::error_code MemoryFiles::remove(const std::string& path) {
  const std::lock_guard lock(mutex_);
  files_.erase(path);
  return {};
}
std::vector<std::string> MemoryFiles::list(const std::string& folder) {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> names;
  for (const auto& [path, file] : files_) {
    if (path.starts_with(folder + "/") && path.find('/', folder.size() + 1) == std::string::npos) {
      names.push_back(path.substr(folder.size() + 1));
    }
  }
  return names;
}

}  // namespace zelvo::tests
