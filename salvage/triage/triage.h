/// A quick look at a damaged film: what is left of it, and about how much a deep repair would keep. Sizes are in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/workers.h"
#include "salvage/salvage_report.h"
#include "salvage/scan/rescue_map.h"
#include "salvage/triage/triage_look.h"
#include "salvage/triage/triage_sample.h"

namespace zelvo::salvage {

enum class TriageHeaders : std::uint8_t { own, partlyLost, lost };

/// A share of the file, with the bounds between which it should be.
struct TriageEstimate {
  double share = 0;
  double low = 0;
  double high = 0;
};

struct TriagedStream {
  SalvagedStream stream;  ///< without its tallies
  double share = 0;       ///< of the bytes looked at
};

struct TriageReport {
  bool isComplete = false;  ///< false when it was stopped
  std::uint64_t fileSize = 0;
  std::uint64_t bytesRead = 0;
  std::size_t places = 0;  ///< that were read
  bool isWhole = false;    ///< all of the file was looked at
  std::uint64_t failedReads = 0;
  std::uint64_t failed = 0;  ///< bytes that could not be read
  /// Of the file: by TriageKind; they add up to 1 unless the file is empty.
  std::array<double, kTriageKinds> shares{};
  std::vector<TriagedStream> streams;  ///< of the film
  std::string_view format;             ///< of what is no film of this kind; empty without one
  TriageHeaders headers = TriageHeaders::lost;
  TriageEstimate kept;  ///< of the file's bytes, those of payloads that a deep repair keeps

  [[nodiscard]] double of(TriageKind kind) const { return shares[static_cast<std::size_t>(kind)]; }
  /// Whether every place looked at is of this kind.
  [[nodiscard]] bool isAll(TriageKind kind) const { return of(kind) > 0.9999; }
};

struct TriageRun {
  platform::ReadableFile& input;
  const FilmRescue* rescue = nullptr;  ///< what the map of its rescue says; null without one
  const platform::CancelMark& cancel;
  platform::Workers& workers;
  TriageLimits limits = {};
};

/// Of a small file all is read, and a deep repair is planned in memory; of a large one the places that were read stand
/// for what lies between them.
/// Thread: any. Throws std::bad_alloc alone.
[[nodiscard]] TriageReport triage(const TriageRun& run);

/// Of the bytes of an input, those of payloads that a deep repair keeps.
[[nodiscard]] double keptShare(const SalvageReport& report);

}  // namespace zelvo::salvage
