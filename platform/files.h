/// Files read and written by position. Offsets and sizes are in bytes. Nothing here throws: a read that meets the end
/// of the file answers fewer bytes, and a real failure also carries its cause.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <system_error>

namespace zelvo::platform {

/// What one read or write did. `count` bytes are done even when `error` is set; the end of a file is no error.
struct IoResult {
  std::size_t count = 0;
  std::error_code error;
};

/// A file open for reading; closed by its destructor.
/// Thread: any, several at once.
class ReadableFile {
 public:
  virtual ~ReadableFile() = default;

  /// Fills `into` from `offset` on, going on after interruptions until it is full, the file ends or a read fails.
  [[nodiscard]] virtual IoResult readAt(std::uint64_t offset, std::span<std::byte> into) = 0;

  /// Fills the front of `into` with what can be read without waiting for a disk or a server; answers how much that is.
  /// 0 says nothing: not where the file ends, nor whether a read fails. A file that knows no better answers 0.
  [[nodiscard]] virtual std::size_t readAtOnce(std::uint64_t /*offset*/, std::span<std::byte> /*into*/) { return 0; }

  /// Fills `pieces` one after the other with the bytes from `offset` on, as one `readAt` of their length together
  /// would. A file that knows no better reads each on its own.
  [[nodiscard]] virtual IoResult readScattered(std::uint64_t offset, std::span<const std::span<std::byte>> pieces) {
    IoResult all;
    for (const std::span<std::byte> piece : pieces) {
      const IoResult one = readAt(offset + all.count, piece);
      all.count += one.count;
      all.error = one.error;
      if (one.count < piece.size()) break;
    }
    return all;
  }

  /// Size of the file now, in bytes; 0 when it cannot be told.
  [[nodiscard]] virtual std::uint64_t size() = 0;
};

/// A file open for writing; closed by its destructor if `close` was not called.
/// Thread: `writeAt`, `writeOut` and `beginWriteOut` any, several at once; the others one at a time, with no write
/// under way.
class WritableFile {
 public:
  virtual ~WritableFile() = default;

  /// Writes all of `from` at `offset`, going on after interruptions and short writes until a write fails.
  [[nodiscard]] virtual IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) = 0;

  /// Asks for room for `size` bytes ahead of writing them; the file becomes that long.
  /// Failure: a file system that cannot do this answers std::errc::operation_not_supported and nothing changes; see
  /// `isNoRoom` for one that has not so much.
  [[nodiscard]] virtual std::error_code reserve(std::uint64_t size) = 0;

  /// Makes the file exactly `size` bytes long.
  [[nodiscard]] virtual std::error_code truncate(std::uint64_t size) = 0;

  /// Sends `size` bytes from `offset` on, which were written before, to the medium and waits for it, so that a later
  /// `flush` has little to wait for. It does not take that flush's place. A file that knows no better does nothing.
  [[nodiscard]] virtual std::error_code writeOut(std::uint64_t /*offset*/, std::uint64_t /*size*/) { return {}; }

  /// Begins to send what was written to the medium, as `writeOut`, and waits for none of it.
  [[nodiscard]] virtual std::error_code beginWriteOut(std::uint64_t /*offset*/, std::uint64_t /*size*/) { return {}; }

  /// Waits until everything written lies on the medium.
  [[nodiscard]] virtual std::error_code flush() = 0;

  /// Closes the file; a late write failure that the system reports only now is answered. Further calls do nothing.
  [[nodiscard]] virtual std::error_code close() = 0;
};

/// True when the cause says that there is not room enough: the disk is full, or this user's share of it is used up.
[[nodiscard]] bool isNoRoom(const std::error_code& cause);

/// An attempt to open: a file, or the reason why there is none.
template <class File>
struct Opened {
  std::unique_ptr<File> file;
  std::error_code error;
};

/// Opens files.
/// Thread: any.
class Files {
 public:
  virtual ~Files() = default;

  /// Follows symbolic links. A folder cannot be opened.
  [[nodiscard]] virtual Opened<ReadableFile> openForReading(const std::string& path) = 0;

  /// Opens an existing file; its content stays until it is overwritten.
  [[nodiscard]] virtual Opened<WritableFile> openForWriting(const std::string& path) = 0;
};

}  // namespace zelvo::platform
