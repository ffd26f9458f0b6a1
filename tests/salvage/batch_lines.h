/// A journal's line with every member set.
#pragma once

#include <string>

#include "salvage/batch_line.h"

namespace zelvo::tests {

[[nodiscard]] inline salvage::BatchLine fullLine(const std::string& input = "/films/a.avi") {
  salvage::BatchLine line;
  line.state = salvage::LineState::done;
  line.command = "salvage";
  line.options = "--gaps close";
  line.input = input;
  line.inputSize = 5'000'000'000;
  line.inputModified = 1'700'000'000'123'456'789;
  line.inputSha256 = std::string(64, 'a');
  line.output = salvage::BatchOutput{"/out/a-salvaged.avi", 4'900'000'000, 64768, 12345, -5, std::string(64, '0')};
  line.outcome = "repaired";
  line.verdict = "partial";
  line.reason = "because";
  line.exit = 0;
  line.figures = {{"seconds", 61.25}, {"seconds_lost", 0.1}};
  line.picture = {{"file", "..mmxxhhll"}, {"video", "."}};
  line.seconds = 1.5;
  line.peakMemory = 30'000'000;
  line.isAdopted = true;
  return line;
}

}  // namespace zelvo::tests
