/// A report as the picture of a film's damage.
#pragma once

#include "platform/damage_picture.h"
#include "salvage/salvage_report.h"

namespace zelvo::salvage {

/// Thread: any.
[[nodiscard]] platform::DamagePicture damagePicture(const SalvageReport& report);

}  // namespace zelvo::salvage
