/// What stands above a medium in the registry, and what it tells about the device that the medium is part of.
#pragma once

#include "platform/media_registry.h"
#include "platform/print_sink.h"
#include "storage/entry.h"

namespace zelvo::storage {

/// Fills in a device's icon, its connection and its model texts: from the medium itself, then from its parents in the
/// plane "IOService", up to four levels. A key that a nearer level has given is never replaced.
/// Decision: inventory, The nearest level wins
/// Prints the properties of each parent after its level's header.
void describeDevice(const platform::RegistryObject& medium, Entry& entry, platform::PrintSink& printed);

}  // namespace zelvo::storage
