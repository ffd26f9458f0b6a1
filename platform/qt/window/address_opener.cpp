#include "platform/qt/window/address_opener.h"

#include <QDeadlineTimer>
#include <QSocketNotifier>
#include <utility>

namespace zelvo::platform::qt {

namespace {

/// A browser that runs within the program ends long after it was opened; its status says nothing then.
constexpr qint64 kSoonMilliseconds = 30000;

}  // namespace

bool AddressOpener::open(const std::string& address, std::function<void()> failed) {
  auto started = starter_.start(program_, address);
  if (!started) return false;
  if (started->descriptor() >= 0) watch(std::move(started), std::move(failed));
  return true;
}

void AddressOpener::watch(std::unique_ptr<StartedProgram> started, std::function<void()> failed) {
  const std::shared_ptr<StartedProgram> program = std::move(started);
  auto* const end = new QSocketNotifier(program->descriptor(), QSocketNotifier::Read, this);
  connect(end, &QSocketNotifier::activated, this,
          [end, program, told = std::move(failed), soon = QDeadlineTimer(kSoonMilliseconds)] {
            end->setEnabled(false);
            end->deleteLater();
            if (program->hasFailed() && !soon.hasExpired() && told) told();
          });
}

}  // namespace zelvo::platform::qt
