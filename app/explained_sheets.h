/// Sheets of which one is told why it comes, just before it is asked for.
#pragma once

#include <functional>
#include <utility>

#include "platform/sheets.h"

namespace zelvo::app {

/// Hands everything on to `sheets`. Thread: any; `explain` runs on the thread that asks for `explained`.
class ExplainedSheets final : public platform::Sheets {
 public:
  ExplainedSheets(platform::Sheets& sheets, const platform::Window& explained, std::function<void()> explain)
      : sheets_(sheets), explained_(explained), explain_(std::move(explain)) {}

  void beginSheet(platform::Window& sheet, platform::Window& over, std::function<bool()> stillWanted) override {
    if (&sheet == &explained_) explain_();
    sheets_.beginSheet(sheet, over, std::move(stillWanted));
  }
  void endSheet(platform::Window& sheet) override { sheets_.endSheet(sheet); }

 private:
  platform::Sheets& sheets_;
  const platform::Window& explained_;
  std::function<void()> explain_;
};

}  // namespace zelvo::app
