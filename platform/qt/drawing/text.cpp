#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr QChar kBreak(0x200b);

}  // namespace

QString withoutBreaks(const QString& text) { return QString(text).remove(kBreak); }

void showBreakable(QLabel& label, const QString& text) {
  label.setText(breakable(text));
  label.setAccessibleName(label.text() == text ? QString() : withoutBreaks(text));
}

QString breakable(const QString& text) {
  constexpr int kLongestRun = 24;  // characters; as many of the widest fit in a line of a panel
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

QString clockTime(double seconds) {
  const auto whole = static_cast<qint64>(seconds + 0.5);
  const auto two = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
  const QString rest = two(whole / 60 % 60) + QLatin1Char(':') + two(whole % 60);
  return whole < 3600 ? QString::number(whole / 60) + QLatin1Char(':') + two(whole % 60)
                      : QString::number(whole / 3600) + QLatin1Char(':') + rest;
}

}  // namespace zelvo::platform::qt
