/// The misbehaving web server of web_server.py, running as long as this lives.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>

#include "tests/support/temp_folder.h"

namespace zelvo::tests {

class WebServer {
 public:
  /// Waits until it serves. Failure: a failed test, and `serves` answers false.
  WebServer();
  WebServer(const WebServer&) = delete;
  WebServer& operator=(const WebServer&) = delete;
  ~WebServer();

  [[nodiscard]] bool serves() const { return !ports_.empty(); }
  /// "http://127.0.0.1:PORT/PATH"; `server` is one of those that web_server.py names.
  [[nodiscard]] std::string address(const std::string& server, const std::string& path) const;
  /// The certificate of the authority that vouches for "https".
  [[nodiscard]] std::string authority() const { return folder_ / "authority.pem"; }

 private:
  TempFolder folder_;
  std::map<std::string, int> ports_;
  pid_t process_ = -1;
  int input_ = -1;
};

}  // namespace zelvo::tests
