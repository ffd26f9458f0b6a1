#include "deep/film_copy.h"

#include <algorithm>
#include <random>
#include <span>

#include "platform/bytes.h"
#include "platform/hidden_names.h"
#include "platform/paths.h"
#include "platform/same_file.h"
#include "platform/shown_text.h"

namespace zelvo::deep {

namespace {

using CopyKind = CopyEnd::Kind;

constexpr std::size_t kPiece = std::size_t{1} << 20U;
/// So much is sent to the medium together: no stop waits longer than for that.
constexpr std::uint64_t kStep = std::uint64_t{4} << 20U;
constexpr int kMaxNames = 8;
/// Reading and writing by the owner alone.
constexpr std::uint32_t kOwnFile = 0600;

std::string freshHiddenName() {
  std::random_device random;
  std::string name(platform::kHiddenBeginning);
  for (std::size_t digits = 0; digits < platform::kHiddenDigits; digits += 8) {
    name += platform::shownHex(random(), 8).substr(2);
  }
  return name.append(platform::kHiddenEnd);
}

/// A file without its name; removed when it goes before it has one.
class Nameless {
 public:
  explicit Nameless(const DeepServices& services) : services_(services) {}
  Nameless(const Nameless&) = delete;
  Nameless& operator=(const Nameless&) = delete;
  ~Nameless() {
    file.reset();
    if (!path_.empty()) static_cast<void>(services_.fileManager.remove(path_));
  }

  std::error_code create(const std::string& folder) {
    std::error_code error;
    for (int i = 0; i < kMaxNames; ++i) {
      const std::string path = platform::pathIn(folder, freshHiddenName());
      auto created = services_.newFiles.createNewFile(path);
      error = created.error;
      if (error == std::errc::file_exists) continue;
      if (error) return error;
      lock_ = services_.newFiles.lockNewFile(path);
      // Whoever removes what dead programs have left may take it for that before it is locked.
      if (!lock_ && !services_.fileManager.exists(path)) continue;
      path_ = path;
      file = std::move(created.file);
      return {};
    }
    return error ? error : std::make_error_code(std::errc::io_error);
  }
  /// Where it is to replace a file, nobody else may look into it meanwhile.
  void hideFromOthers() {
    const auto there = services_.fileManager.attributes(path_);
    if (there) static_cast<void>(services_.newFiles.setPermissions(path_, kOwnFile));
  }
  std::error_code nameIt(const CopyOrder& order) {
    const auto replaced = order.mayReplace ? services_.fileManager.attributesFollowingLinks(order.to) : std::nullopt;
    if (replaced) static_cast<void>(services_.newFiles.setPermissions(path_, replaced->permissions));
    const std::error_code error =
        replaced ? services_.fileManager.rename(path_, order.to) : services_.newFiles.renameToNew(path_, order.to);
    if (!error) path_.clear();
    return error;
  }

  std::unique_ptr<platform::WritableFile> file;

 private:
  const DeepServices& services_;
  std::string path_;
  std::unique_ptr<platform::FileLock> lock_;
};

CopyEnd failed(const std::error_code& cause, std::uint64_t needed, const DeepServices& services,
               const std::string& folder) {
  if (!platform::isNoRoom(cause)) return {.kind = CopyKind::writeFailed, .cause = cause};
  return {.kind = CopyKind::noRoom,
          .cause = cause,
          .needed = needed,
          .free = services.fileManager.freeSpace(folder).value_or(0)};
}

}  // namespace

CopyEnd copyFilm(const DeepServices& services, const CopyOrder& order, CopyProgress& progress,
                 const std::function<void()>& moved) {
  const auto isDamagedFilm = [&] { return platform::areOneFile(services.fileManager, order.to, order.damaged); };
  if (isDamagedFilm()) return {.kind = CopyKind::isDamaged};
  const auto from = services.files.openForReading(order.from);
  if (from.error == std::errc::no_such_file_or_directory) return {.kind = CopyKind::sourceGone};
  if (!from.file) return {.kind = CopyKind::unreadable, .cause = from.error};
  if (from.file->size() != order.size) return {.kind = CopyKind::sourceGone};
  const std::uint64_t size = order.size;
  progress.all = size;
  const std::string folder = platform::folderOf(order.to);
  const auto room = services.fileManager.freeSpace(folder);
  if (room && *room < size) return {.kind = CopyKind::noRoom, .needed = size, .free = *room};

  Nameless to(services);
  if (const std::error_code error = to.create(folder)) return failed(error, size, services, folder);
  if (order.mayReplace && services.fileManager.exists(order.to)) to.hideFromOthers();
  if (const std::error_code error = to.file->reserve(size); platform::isNoRoom(error)) {
    return failed(error, size, services, folder);
  }
  platform::Bytes piece(kPiece);
  std::uint64_t sent = 0;
  for (std::uint64_t at = 0; at < size;) {
    if (progress.isStopped) return {.kind = CopyKind::stopped};
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), size - at));
    const platform::IoResult read = from.file->readAt(at, std::span(piece).first(wanted));
    if (read.count < wanted) {
      if (read.error) return {.kind = CopyKind::unreadable, .cause = read.error};
      return {.kind = CopyKind::sourceGone};
    }
    const platform::IoResult written = to.file->writeAt(at, std::span(piece).first(wanted));
    if (written.error) return failed(written.error, size, services, folder);
    at += wanted;
    if (at - sent >= kStep) {
      if (const std::error_code error = to.file->writeOut(sent, at - sent)) {
        return failed(error, size, services, folder);
      }
      sent = at;
    }
    progress.done = at;
    moved();
  }
  progress.isFlushing = true;
  moved();
  if (const std::error_code error = to.file->flush()) return failed(error, size, services, folder);
  if (const std::error_code error = to.file->close()) return failed(error, size, services, folder);
  // A stop or another file of that name may have come meanwhile.
  if (progress.isStopped) return {.kind = CopyKind::stopped};
  if (isDamagedFilm()) return {.kind = CopyKind::isDamaged};
  if (const std::error_code error = to.nameIt(order)) {
    if (error == std::errc::file_exists) return {.kind = CopyKind::nameTaken};
    return failed(error, size, services, folder);
  }
  // The film is whole; a power cut may still take its name on a medium that cannot keep it.
  static_cast<void>(services.newFiles.flushFolder(folder));
  return {};
}

}  // namespace zelvo::deep
