#include "deep/questions.h"

#include "deep/texts.h"

namespace zelvo::deep {

void Questions::tell(std::string_view title, const std::string& message) {
  panels_.runAlertPanel({.title = translated(title),
                         .message = message,
                         .defaultButton = translated(texts::kOk),
                         .alternateButton = std::nullopt,
                         .otherButton = std::nullopt});
}

bool Questions::agrees(std::string_view title, const std::string& message, std::string_view no, std::string_view yes) {
  // Without an alternate button Esc answers the default one.
  return panels_.runAlertPanel({.title = translated(title),
                                .message = message,
                                .defaultButton = translated(no),
                                .alternateButton = std::nullopt,
                                .otherButton = translated(yes)}) == platform::kAlertOther;
}

platform::AlertPanel Questions::panel(std::string_view title, const std::string& message, std::string_view first,
                                      std::string_view dismissal, std::string_view other) const {
  return {.title = translated(title),
          .message = message,
          .defaultButton = translated(first),
          .alternateButton = translated(dismissal),
          .otherButton = other.empty() ? std::nullopt : std::optional(translated(other))};
}

int Questions::choose(std::string_view title, const std::string& message, std::string_view first,
                      std::string_view dismissal, std::string_view other) {
  return panels_.runAlertPanel(panel(title, message, first, dismissal, other));
}

int Questions::tellDone(std::string_view title, const std::string& message, std::string_view first,
                        std::string_view dismissal, std::string_view other) {
  platform::AlertPanel told = panel(title, message, first, dismissal, other);
  told.sign = platform::SheetSign::done;
  return panels_.runAlertPanel(told);
}

}  // namespace zelvo::deep
