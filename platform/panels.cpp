#include "platform/panels.h"

#include <algorithm>

namespace zelvo::platform {

namespace {

char lowerCase(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

bool sameInAnyCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return lowerCase(left) == lowerCase(right); });
}

bool isShown(const std::optional<std::string>& button) { return button && !button->empty(); }

}  // namespace

int dismissalAnswer(const AlertPanel& alert, const Translator& translator) {
  const auto cancels = [said = translator.translated("Cancel")](const std::optional<std::string>& button) {
    return button == "Cancel" || button == said;
  };
  if (cancels(alert.defaultButton)) return kAlertDefault;
  if (cancels(alert.alternateButton)) return kAlertAlternate;
  if (cancels(alert.otherButton)) return kAlertOther;
  return isShown(alert.alternateButton) ? kAlertAlternate : kAlertDefault;
}

bool hasAllowedFileType(std::string_view path, const std::vector<std::string>& extensions) {
  if (extensions.empty()) return true;
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos) return false;
  return std::any_of(extensions.begin(), extensions.end(), [extension = name.substr(dot + 1)](const std::string& one) {
    return sameInAnyCase(extension, one);
  });
}

}  // namespace zelvo::platform
