/// A variable of the environment that is as it was once this goes.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

namespace zelvo::tests {

class Variable {
 public:
  Variable(std::string name, const std::string& value) : name_(std::move(name)) {
    if (const char* before = ::getenv(name_.c_str())) before_ = before;
    ::setenv(name_.c_str(), value.c_str(), 1);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() {
    if (before_) {
      ::setenv(name_.c_str(), before_->c_str(), 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }

 private:
  std::string name_;
  std::optional<std::string> before_;
};

}  // namespace zelvo::tests
