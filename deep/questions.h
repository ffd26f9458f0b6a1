/// What the deep repair says and asks in panels. Each waits for its answer, and events are served meanwhile: what was
/// true before need not be true after. Thread: main.
#pragma once

#include <string>
#include <string_view>

#include "platform/panels.h"
#include "platform/translator.h"

namespace zelvo::deep {

class Questions {
 public:
  Questions(platform::AlertPanels& panels, const platform::Translator& translator)
      : panels_(panels), translator_(translator) {}

  /// Texts by their English; the message is taken as it is.
  void tell(std::string_view title, const std::string& message);
  /// True for `yes`. Esc and Return answer `no`.
  [[nodiscard]] bool agrees(std::string_view title, const std::string& message, std::string_view no,
                            std::string_view yes);
  /// As an alert answers; Esc answers `kAlertAlternate`. Without a text there is no third button.
  [[nodiscard]] int choose(std::string_view title, const std::string& message, std::string_view first,
                           std::string_view dismissal, std::string_view other = {});
  /// The same under the sign of something that is done.
  [[nodiscard]] int tellDone(std::string_view title, const std::string& message, std::string_view first,
                             std::string_view dismissal, std::string_view other = {});

  [[nodiscard]] std::string translated(std::string_view text) const { return translator_.translated(text); }
  [[nodiscard]] std::string translated(std::string_view text, std::initializer_list<std::string_view> values) const {
    return platform::filled(translator_.translated(text), values);
  }

 private:
  [[nodiscard]] platform::AlertPanel panel(std::string_view title, const std::string& message, std::string_view first,
                                           std::string_view dismissal, std::string_view other) const;

  platform::AlertPanels& panels_;
  const platform::Translator& translator_;
};

}  // namespace zelvo::deep
