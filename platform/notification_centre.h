/// Named messages within the program: whoever registered for a name is told of every posting of it.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvo::platform {

/// Who a notification is about. A base without content, so that a receiver can ask what kind of object it is.
class NotificationSender {
 public:
  virtual ~NotificationSender() = default;

 protected:
  NotificationSender() = default;
  NotificationSender(const NotificationSender&) = default;
  NotificationSender& operator=(const NotificationSender&) = default;
};

struct Notification {
  std::string_view name;
  NotificationSender* object = nullptr;
};

/// Thread: main.
class NotificationCentre {
 public:
  using Handler = std::function<void(const Notification&)>;

  /// Registers `observer` for every posting of `name`, whatever its object. Registering again is kept as one more
  /// registration: the handler then runs once for each.
  void addObserver(const void* observer, std::string_view name, Handler handler);

  /// Takes away every registration of `observer`.
  void removeObserver(const void* observer);

  /// Runs the handlers registered for the name, in the order of their registration. One that is registered meanwhile is
  /// not told; one that is taken away meanwhile is not told either.
  void post(const Notification& notification);

 private:
  struct Registration {
    const void* observer = nullptr;
    std::string name;
    Handler handler;
    std::size_t number = 0;
  };
  std::vector<Registration> registrations_;
  std::size_t nextNumber_ = 0;
};

}  // namespace zelvo::platform
