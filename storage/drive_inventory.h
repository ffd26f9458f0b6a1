/// The machine's writable disks, partitions and mounted volumes, matched with each other.
#pragma once

#include "platform/media_registry.h"
#include "platform/print_sink.h"
#include "platform/volume_source.h"
#include "storage/entry.h"
#include "storage/media_walk.h"
#include "storage/volume_list.h"

namespace zelvo::storage {

/// Empties both arrays and fills them again: the volumes (`volumeList`), the media (`FindMediaMain`), each mounted
/// medium's volume name and mount point (`joinVolumesToMedia`), and tidy texts (`truncateDriveModelNumber`). `printed`
/// takes each registry object's properties and a line per failure.
/// Thread: one at a time.
void initialDriveList(platform::MediaRegistry& registry, platform::VolumeSource& volumes, Entries& responseFindMedia,
                      Entries& finalArrayForVolumes, platform::PrintSink& printed);

/// Copies "Volume Name" and "Mounted Path" into each entry of a mounted medium from the volume whose "Volume Path",
/// with an "r" inserted at index 5, is the entry's "device path". Of several such volumes the last one counts.
void joinVolumesToMedia(const Entries& finalArrayForVolumes, Entries& responseFindMedia);

/// Makes the model, serial and revision texts of devices fit to be shown: "-" for a missing one, white space trimmed
/// off both ends. Volumes are left alone, and so are devices on USB that are not also on SATA. It shortens nothing.
void truncateDriveModelNumber(Entries& responseFindMedia);

}  // namespace zelvo::storage
