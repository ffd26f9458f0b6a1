#include "platform/qt/drawing/posted_value.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/linux/main_queue.h"

namespace zelvo::tests {
namespace {

using Value = platform::qt::PostedValue<std::string>;
using Lines = std::vector<std::string>;

class PostedValue : public testing::Test {
 protected:
  /// Sets the values on a worker, one after the other.
  void setOnWorker(const Lines& values) {
    std::thread([&] {
      for (const std::string& one : values) value.set(one);
    }).join();
  }
  void serve() {
    while (queue.serve()) {
    }
  }

  platform::linux_::LinuxMainQueue queue;
  Lines shown;
  Value value{queue, "", [this](const std::string& one) { shown.push_back(one); }};
};

TEST_F(PostedValue, WhatAWorkerRepeatsIsHandedOverOnce) {
  setOnWorker(Lines(1000, "scanning"));
  serve();
  setOnWorker(Lines(1000, "scanning"));
  serve();

  EXPECT_EQ(shown, Lines{"scanning"});
}

TEST_F(PostedValue, EveryChangeIsShownInOrder) {
  setOnWorker({"a", "b", "a", "a", "b"});
  serve();

  EXPECT_EQ(shown, (Lines{"a", "b", "a", "b"}));
}

TEST_F(PostedValue, TheMainThreadShowsAtOnceAndAlways) {
  value.set("a");
  value.set("a");

  EXPECT_EQ(shown, (Lines{"a", "a"}));
}

TEST_F(PostedValue, AValueIsComparedWithTheOneThatWillStandThereThen) {
  setOnWorker({"a"});
  value.set("b");
  setOnWorker({"b"});
  serve();

  EXPECT_EQ(shown, (Lines{"b", "a", "b"}));
}

TEST_F(PostedValue, AValueOfTheMainThreadIsKnownToWorkers) {
  setOnWorker({"a"});
  serve();
  value.set("b");
  setOnWorker({"b"});
  setOnWorker({"a"});
  serve();

  EXPECT_EQ(shown, (Lines{"a", "b", "a"}));
}

}  // namespace
}  // namespace zelvo::tests
