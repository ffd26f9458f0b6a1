#include "platform/linux/log.h"

#include <syslog.h>

#include <cstdio>
#include <utility>

namespace zelvo::platform::linux_ {

std::string withoutControlCharacters(std::string_view text) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  std::string clean;
  clean.reserve(text.size());
  for (const char character : text) {
    const auto value = static_cast<unsigned char>(character);
    if (value >= 0x20 && value != 0x7f) {
      clean += character;
      continue;
    }
    clean += "\\x";
    clean += kHexDigits[value >> 4U];
    clean += kHexDigits[value & 15U];
  }
  return clean;
}

SystemLog::SystemLog(const char* name) { ::openlog(name, LOG_PID, LOG_USER); }
SystemLog::~SystemLog() { ::closelog(); }
void SystemLog::line(std::string_view text) { ::syslog(LOG_NOTICE, "%s", withoutControlCharacters(text).c_str()); }

StandardErrorLog::StandardErrorLog(std::string prefix, bool tracesPositions)
    : prefix_(std::move(prefix)), tracesPositions_(tracesPositions) {}

void StandardErrorLog::line(std::string_view text) {
  // One write per line, so that lines of several threads do not mix.
  const std::string whole = prefix_ + withoutControlCharacters(text) + "\n";
  std::fwrite(whole.data(), 1, whole.size(), stderr);
}

}  // namespace zelvo::platform::linux_
