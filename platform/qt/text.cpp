#include "platform/qt/text.h"

namespace zelvo::platform::qt {

QString breakable(const QString& text) {
  constexpr int kLongestRun = 24;  // characters; as many of the widest fit in a line of a panel
  constexpr QChar kBreak(0x200b);
  QString all;
  all.reserve(text.size() + text.size() / kLongestRun);
  int run = 0;
  for (const QChar one : text) {
    const bool belongsToLast = one.isLowSurrogate() || one.isMark();
    if (run >= kLongestRun && !belongsToLast && !one.isSpace()) {
      all += kBreak;
      run = 0;
    }
    all += one;
    run = one.isSpace() || one == kBreak ? 0 : run + 1;
    if (one == QLatin1Char('/')) {
      all += kBreak;
      run = 0;
    }
  }
  return all;
}

}  // namespace zelvo::platform::qt
