/// The machine's storage at one moment.
#pragma once

#include <memory>

#include "platform/media_registry.h"
#include "platform/volume_source.h"

namespace zelvo::platform {

/// Both are of one reading of the system, so they agree with each other.
struct StorageView {
  std::shared_ptr<MediaRegistry> media;
  std::shared_ptr<VolumeSource> volumes;
};

}  // namespace zelvo::platform
