/// The walk over the registry's writable media: whole disks and partitions, with what the levels above them tell.
#pragma once

#include <memory>
#include <span>

#include "platform/media_registry.h"
#include "platform/print_sink.h"
#include "storage/entry.h"

namespace zelvo::storage {

/// Bytes of the buffer in which a device path is formed, the zero byte at its end included.
constexpr std::size_t kBSDPathCapacity = 1024;
/// Levels of parents that are looked at.
constexpr std::size_t kParentLevels = 4;

/// The walk's entry: appends one entry per writable medium to `mediaArray` (two for a whole disk that is mounted
/// without partitions: as a device and as a volume). `volumeArray` must be filled already.
/// Failure: printed, and `mediaArray` stays as it is.
/// \return 0, always.
int FindMediaMain(platform::MediaRegistry& registry, Entries& mediaArray, const Entries& volumeArray,
                  platform::PrintSink& printed);

/// Looks for the writable media. \return the registry's status; on success `mediaIterator` goes over the media.
/// Failure: prints "IOServiceMatching returned a NULL dictionary.\n" when there is no dictionary to match with (the
/// registry is asked nevertheless), and "IOServiceGetMatchingServices returned 0x%08x\n" for any status but 0.
[[nodiscard]] platform::RegistryStatus FindMedia(platform::MediaRegistry& registry,
                                                 std::unique_ptr<platform::RegistryIterator>& mediaIterator,
                                                 platform::PrintSink& printed);

/// The walk itself; device paths are formed in `bsdPath`, which is as large as a path may be, its zero byte included.
/// \param mediaIterator null counts as one without media
/// \return 0
platform::RegistryStatus GetBSDPath(platform::RegistryIterator* mediaIterator, std::span<char> bsdPath,
                                    Entries& mediaArray, const Entries& volumeArray, platform::PrintSink& printed);

}  // namespace zelvo::storage
