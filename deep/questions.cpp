#include "deep/questions.h"

#include "deep/texts.h"

namespace zelvo::deep {

void Questions::tell(std::string_view title, const std::string& message) {
  panels_.runAlertPanel({.title = said(title),
                         .message = message,
                         .defaultButton = said(texts::kOk),
                         .alternateButton = std::nullopt,
                         .otherButton = std::nullopt});
}

bool Questions::agrees(std::string_view title, const std::string& message, std::string_view no, std::string_view yes) {
  // Without an alternate button Esc answers the default one.
  return panels_.runAlertPanel({.title = said(title),
                                .message = message,
                                .defaultButton = said(no),
                                .alternateButton = std::nullopt,
                                .otherButton = said(yes)}) == platform::kAlertOther;
}

int Questions::choose(std::string_view title, const std::string& message, std::string_view first,
                      std::string_view dismissal, std::string_view other) {
  return panels_.runAlertPanel({.title = said(title),
                                .message = message,
                                .defaultButton = said(first),
                                .alternateButton = said(dismissal),
                                .otherButton = other.empty() ? std::nullopt : std::optional(said(other))});
}

}  // namespace zelvo::deep
