#include "engine/repair_state.h"

namespace zelvo::engine {

namespace {

/// Fresh pages stay untouched; only entry 0, where the sums start, is set.
/// Decision: scan, Untouched table memory costs nothing
std::unique_ptr<SampleTables> untouchedTables() {
  auto tables = std::make_unique_for_overwrite<SampleTables>();
  tables->videosamplesizearray[0] = 0;
  tables->videosampleoffsetarray[0] = 0;
  tables->audiosampleoffsetarray[0] = 0;
  tables->audiosamplesizearray[0] = 0;
  return tables;
}

}  // namespace

RepairState::RepairState()
    : tables_(untouchedTables()),
      videosamplesizearray(tables_->videosamplesizearray),
      videosampleoffsetarray(tables_->videosampleoffsetarray),
      audiosampleoffsetarray(tables_->audiosampleoffsetarray),
      audiosamplesizearray(tables_->audiosamplesizearray) {}

}  // namespace zelvo::engine
