/// A report as the picture of a film's damage.
#pragma once

#include "platform/damage_picture.h"
#include "platform/translator.h"
#include "salvage/salvage_report.h"

namespace zelvo::salvage {

/// Thread: any.
[[nodiscard]] platform::DamagePicture damagePicture(
    const SalvageReport& report, const platform::Translator& translator = platform::englishTranslator());

}  // namespace zelvo::salvage
