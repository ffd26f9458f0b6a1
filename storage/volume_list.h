/// The mounted local volumes and their names.
#pragma once

#include "platform/print_sink.h"
#include "platform/volume_source.h"
#include "storage/entry.h"

namespace zelvo::storage {

/// Bytes of the C string that takes a mount point, the zero byte at its end included.
constexpr std::size_t kMountPointCapacity = 512;

/// Appends one entry per mounted local volume to `finalArrayForVolumes`, gives each the link of "/Volumes" that leads
/// to its mount point (the last one, when several do), and calls `FindVolumeNames`.
void volumeList(platform::VolumeSource& volumes, Entries& finalArrayForVolumes, platform::PrintSink& printed);

/// Adds "Volume Name" and "Volume Path" to each volume's entry.
/// Failure: a mount point that is no UTF-8 C string of at most 512 bytes, its end included, or one whose file system
/// cannot be asked, leaves that entry with the keys it had; the latter prints "statfs failed: REASON\n".
void FindVolumeNames(platform::VolumeSource& volumes, Entries& volumeArray, platform::PrintSink& printed);

}  // namespace zelvo::storage
