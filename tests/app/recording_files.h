/// Files in memory with folders and links, whose changes are written into the list of events.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>

#include "platform/headless/events.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

/// Opens files in memory, and notes when one is flushed to its medium. Thread: any.
class RecordingFiles final : public platform::Files {
 public:
  RecordingFiles(MemoryFiles& files, platform::headless::Events& events) : files_(files), events_(events) {}
  /// What every flush answers.
  std::error_code flushError;
  /// Told of what is sent to the medium during a copy, on the thread that sends it; and what that answers.
  std::function<void(std::uint64_t offset, std::uint64_t size)> onWriteOut;
  std::error_code writeOutError;
  /// Called on the thread that flushes, before it does.
  std::function<void()> onFlush;

  platform::Opened<platform::ReadableFile> openForReading(const std::string& path) override {
    return files_.openForReading(path);
  }
  platform::Opened<platform::WritableFile> openForWriting(const std::string& path) override {
    auto opened = files_.openForWriting(path);
    if (opened.file) opened.file = std::make_unique<File>(std::move(opened.file), path, *this);
    return opened;
  }

 private:
  class File final : public platform::WritableFile {
   public:
    File(std::unique_ptr<platform::WritableFile> file, std::string path, RecordingFiles& files)
        : file_(std::move(file)), path_(std::move(path)), files_(files) {}
    platform::IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) override {
      return file_->writeAt(offset, from);
    }
    std::error_code reserve(std::uint64_t size) override { return file_->reserve(size); }
    std::error_code truncate(std::uint64_t size) override { return file_->truncate(size); }
    std::error_code writeOut(std::uint64_t offset, std::uint64_t size) override {
      if (files_.onWriteOut) files_.onWriteOut(offset, size);
      return files_.writeOutError;
    }
    std::error_code flush() override {
      if (files_.onFlush) files_.onFlush();
      files_.events_.add("flush(" + path_ + ")");
      return files_.flushError;
    }
    std::error_code close() override { return file_->close(); }

   private:
    std::unique_ptr<platform::WritableFile> file_;
    std::string path_;
    RecordingFiles& files_;
  };

  MemoryFiles& files_;
  platform::headless::Events& events_;
};

/// Thread: any, once `links` and `refusedFolders` are set.
class RecordingFileManager final : public platform::FileManager {
 public:
  RecordingFileManager(MemoryFiles& files, platform::headless::Events& events) : files_(files), events_(events) {}

  /// Symbolic links with their targets.
  std::map<std::string, std::string> links;
  /// Folders that cannot be made.
  std::set<std::string> refusedFolders;
  /// Told of every path whose free space is asked for, before the answer.
  std::function<void(const std::string&)> onFreeSpace;
  [[nodiscard]] bool hasFolder(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return folders_.contains(path);
  }

  std::optional<platform::FileAttributes> attributes(const std::string& path) override {
    if (const auto link = links.find(path); link != links.end()) {
      return platform::FileAttributes{platform::FileAttributes::Kind::symbolicLink, link->second.size(), 1, 1};
    }
    if (hasFolder(path)) return platform::FileAttributes{platform::FileAttributes::Kind::folder, 4096, 1, 2};
    return files_.attributes(path);
  }
  std::optional<platform::FileAttributes> attributesFollowingLinks(const std::string& path) override {
    const auto link = links.find(path);
    return attributes(link == links.end() ? path : link->second);
  }
  std::optional<std::uint64_t> freeSpace(const std::string& path) override {
    if (onFreeSpace) onFreeSpace(path);
    if (refusedFolders.contains(path)) return std::nullopt;
    return files_.freeSpace(path);
  }
  bool exists(const std::string& path) override { return attributesFollowingLinks(path).has_value(); }
  std::error_code createFile(const std::string& path) override {
    events_.add("createFile(" + path + ")");
    return files_.createFile(path);
  }
  std::error_code createFolder(const std::string& path) override {
    events_.add("createFolder(" + path + ")");
    if (refusedFolders.contains(path)) return std::make_error_code(std::errc::permission_denied);
    const std::lock_guard lock(mutex_);
    folders_.insert(path);
    return {};
  }
  std::error_code rename(const std::string& from, const std::string& to) override { return files_.rename(from, to); }
  std::error_code remove(const std::string& path) override {
    events_.add("remove(" + path + ")");
    return files_.remove(path);
  }
  std::vector<std::string> list(const std::string& folder) override { return files_.list(folder); }
  std::optional<std::string> linkTarget(const std::string& path) override {
    const auto link = links.find(path);
    return link == links.end() ? std::nullopt : std::optional(link->second);
  }
  bool isWritable(const std::string& path) override { return files_.isWritable(path); }
  bool isDeletable(const std::string& path) override { return files_.isDeletable(path); }

 private:
  MemoryFiles& files_;
  platform::headless::Events& events_;
  mutable std::mutex mutex_;
  std::set<std::string> folders_;
};

}  // namespace zelvo::tests
