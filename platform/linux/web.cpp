#include "platform/linux/web.h"

#include <curl/curl.h>
#include <signal.h>
#include <strings.h>

#include <memory>
#include <string_view>

namespace zelvo::platform::linux_ {

namespace {

struct CleanUp {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
using Handle = std::unique_ptr<CURL, CleanUp>;

/// One fetch under way.
struct Fetch {
  CURL* handle = nullptr;
  const BodySink& sink;
  std::optional<std::size_t> largest;
  std::size_t taken = 0;
  bool encrypted = false;  ///< a request went out encrypted
};

/// Takes a piece of the body after decompression, which is where its size is counted: what a server announces is not
/// what comes.
std::size_t takePiece(char* piece, std::size_t one, std::size_t length, void* context) {
  auto& fetch = *static_cast<Fetch*>(context);
  length *= one;
  if (fetch.largest && length > *fetch.largest - fetch.taken) return CURL_WRITEFUNC_ERROR;
  fetch.taken += length;
  fetch.sink(std::as_bytes(std::span(piece, length)));
  return length;
}

/// Called before each request of a chain of redirects: after an encrypted one there is none in the clear.
int beforeRequest(void* context, char*, char*, int, int) {
  auto& fetch = *static_cast<Fetch*>(context);
  const char* scheme = nullptr;
  if (curl_easy_getinfo(fetch.handle, CURLINFO_SCHEME, &scheme) != CURLE_OK || scheme == nullptr) {
    return CURL_PREREQFUNC_ABORT;
  }
  const bool encrypted = ::strcasecmp(scheme, "https") == 0;
  if (fetch.encrypted && !encrypted) return CURL_PREREQFUNC_ABORT;
  fetch.encrypted = encrypted;
  return CURL_PREREQFUNC_OK;
}

bool startsWith(const std::string& text, std::string_view beginning) {
  return text.size() >= beginning.size() && ::strncasecmp(text.data(), beginning.data(), beginning.size()) == 0;
}

/// Sets options until one is refused.
class Options {
 public:
  explicit Options(CURL* handle) : handle_(handle) {}
  template <class Value>
  Options& set(CURLoption option, Value value) {
    works_ = works_ && curl_easy_setopt(handle_, option, value) == CURLE_OK;
    return *this;
  }
  [[nodiscard]] bool work() const { return works_; }

 private:
  CURL* handle_;
  bool works_ = true;
};

bool setUp(Fetch& fetch, const std::string& address, const FetchLimits& limits,
           const std::optional<std::string>& authorities) {
  Options options(fetch.handle);
  options.set(CURLOPT_URL, address.c_str())
      .set(CURLOPT_PROTOCOLS_STR, "http,https")
      .set(CURLOPT_REDIR_PROTOCOLS_STR, startsWith(address, "https:") ? "https" : "http,https")
      .set(CURLOPT_FOLLOWLOCATION, 1L)
      .set(CURLOPT_MAXREDIRS, 5L)
      .set(CURLOPT_PREREQFUNCTION, &beforeRequest)
      .set(CURLOPT_PREREQDATA, &fetch)
      .set(CURLOPT_FAILONERROR, 1L)
      .set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1})
      .set(CURLOPT_ACCEPT_ENCODING, "")
      .set(CURLOPT_NETRC, long{CURL_NETRC_IGNORED})
      .set(CURLOPT_SSL_VERIFYPEER, 1L)
      .set(CURLOPT_SSL_VERIFYHOST, 2L)
      .set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2})
      .set(CURLOPT_WRITEFUNCTION, &takePiece)
      .set(CURLOPT_WRITEDATA, &fetch);
  // Time limits without signals, and a name server that never answers is not waited for beyond them.
  options.set(CURLOPT_NOSIGNAL, 1L)
      .set(CURLOPT_QUICK_EXIT, 1L)
      .set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits.connect.count()))
      .set(CURLOPT_TIMEOUT_MS, limits.total ? static_cast<long>(limits.total->count()) : 0L)
      .set(CURLOPT_LOW_SPEED_LIMIT, static_cast<long>(limits.leastBytesPerSecond))
      .set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits.leastOver.count()));
  if (authorities) options.set(CURLOPT_CAINFO, authorities->c_str()).set(CURLOPT_CAPATH, static_cast<char*>(nullptr));
  return options.work();
}

}  // namespace

WebLibrary::WebLibrary() : works_(curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK) { ::signal(SIGPIPE, SIG_IGN); }

WebLibrary::~WebLibrary() {
  if (works_) curl_global_cleanup();
}

LinuxWeb::LinuxWeb(const WebLibrary& library, std::optional<std::string> authorities)
    : library_(library), authorities_(std::move(authorities)) {}

bool LinuxWeb::fetch(const std::string& address, const FetchLimits& limits, const BodySink& sink) {
  // The library would guess a scheme for an address without one, and ask name servers for the name of a file.
  const bool isAddress = startsWith(address, "http://") || startsWith(address, "https://");
  if (!library_.works() || !isAddress || address.find('\0') != std::string::npos) return false;
  const Handle handle(curl_easy_init());
  if (!handle) return false;
  Fetch fetch{.handle = handle.get(), .sink = sink, .largest = limits.largest};
  return setUp(fetch, address, limits, authorities_) && curl_easy_perform(handle.get()) == CURLE_OK;
}

}  // namespace zelvo::platform::linux_
