#include "platform/notification_centre.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/headless/elements.h"

namespace zelvo::tests {
namespace {

using platform::Notification;
using platform::NotificationCentre;
using Heard = std::vector<std::string>;

class Notifications : public testing::Test {
 protected:
  void listen(const void* observer, std::string_view name, const std::string& what) {
    centre.addObserver(observer, name, [this, what](const Notification&) { heard.push_back(what); });
  }
  NotificationCentre centre;
  Heard heard;
  int first = 0;
  int second = 0;
};

TEST_F(Notifications, HandlersRunInTheOrderOfTheirRegistration) {
  listen(&first, "end", "a");
  listen(&second, "end", "b");
  listen(&first, "other", "c");

  centre.post({"end", nullptr});

  EXPECT_EQ(heard, (Heard{"a", "b"}));
}

TEST_F(Notifications, ADuplicateRegistrationIsKept) {
  listen(&first, "end", "a");
  listen(&first, "end", "a");

  centre.post({"end", nullptr});

  EXPECT_EQ(heard, (Heard{"a", "a"}));
}

TEST_F(Notifications, AnObserverIsTakenAwayWithAllItsRegistrations) {
  listen(&first, "end", "a");
  listen(&second, "end", "b");
  listen(&first, "end", "a");

  centre.removeObserver(&first);
  centre.post({"end", nullptr});

  EXPECT_EQ(heard, Heard{"b"});
}

TEST_F(Notifications, TheObjectIsHandedOn) {
  const auto movie = std::make_shared<platform::headless::HeadlessMovie>("movie", nullptr);
  platform::NotificationSender* got = nullptr;
  centre.addObserver(&first, "end", [&](const Notification& notification) { got = notification.object; });

  centre.post({"end", movie.get()});

  EXPECT_EQ(got, movie.get());
}

TEST_F(Notifications, ARegistrationMadeMeanwhileIsNotTold) {
  centre.addObserver(&first, "end", [this](const Notification&) { listen(&second, "end", "late"); });

  centre.post({"end", nullptr});
  EXPECT_TRUE(heard.empty());

  centre.post({"end", nullptr});
  EXPECT_EQ(heard, Heard{"late"});
}

TEST_F(Notifications, OneTakenAwayMeanwhileIsNotTold) {
  centre.addObserver(&first, "end", [this](const Notification&) {
    heard.push_back("a");
    centre.removeObserver(&first);
    centre.removeObserver(&second);
  });
  listen(&second, "end", "b");
  listen(&heard, "end", "c");

  centre.post({"end", nullptr});

  EXPECT_EQ(heard, (Heard{"a", "c"}));
}

TEST_F(Notifications, PostingWithinAHandlerIsServedAtOnce) {
  centre.addObserver(&first, "outer", [this](const Notification&) {
    centre.post({"inner", nullptr});
    heard.push_back("outer");
  });
  listen(&first, "inner", "inner");

  centre.post({"outer", nullptr});

  EXPECT_EQ(heard, (Heard{"inner", "outer"}));
}

}  // namespace
}  // namespace zelvo::tests
