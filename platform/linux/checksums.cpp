// The library is loaded when the first checksum is wanted: its tables cost each program that links it two megabytes,
// and few want a checksum.
#include "platform/linux/checksums.h"

#include <dlfcn.h>
#include <openssl/evp.h>
#include <openssl/opensslv.h>

#include <string>

namespace zelvo::platform::linux_ {

namespace {

/// What is used of it; all null without it.
struct Crypto {
  decltype(&EVP_MD_CTX_new) newContext = nullptr;
  decltype(&EVP_MD_CTX_free) freeContext = nullptr;
  decltype(&EVP_sha256) sha256 = nullptr;
  decltype(&EVP_DigestInit_ex) init = nullptr;
  decltype(&EVP_DigestUpdate) update = nullptr;
  decltype(&EVP_DigestFinal_ex) final = nullptr;

  [[nodiscard]] bool isThere() const {
    return newContext != nullptr && freeContext != nullptr && sha256 != nullptr && init != nullptr &&
           update != nullptr && final != nullptr;
  }
};

template <class Function>
void find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
}

/// It stays loaded: to let go of it and load it again would cost more than it holds.
Crypto loaded() {
  Crypto crypto;
  const std::string name = "libcrypto.so." + std::to_string(OPENSSL_SHLIB_VERSION);
  void* library = ::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return crypto;
  find(library, "EVP_MD_CTX_new", crypto.newContext);
  find(library, "EVP_MD_CTX_free", crypto.freeContext);
  find(library, "EVP_sha256", crypto.sha256);
  find(library, "EVP_DigestInit_ex", crypto.init);
  find(library, "EVP_DigestUpdate", crypto.update);
  find(library, "EVP_DigestFinal_ex", crypto.final);
  return crypto;
}

class EvpChecksum final : public RunningChecksum {
 public:
  explicit EvpChecksum(const Crypto& crypto) : crypto_(crypto), context_(crypto.newContext(), crypto.freeContext) {
    works_ = context_ && crypto_.init(context_.get(), crypto_.sha256(), nullptr) == 1;
  }

  void add(std::span<const std::byte> bytes) override {
    works_ = works_ && crypto_.update(context_.get(), bytes.data(), bytes.size()) == 1;
  }

  std::optional<Sha256> finish() override {
    Sha256 checksum{};
    unsigned length = 0;
    works_ = works_ && crypto_.final(context_.get(), checksum.data(), &length) == 1 && length == checksum.size();
    if (!works_) return std::nullopt;
    return checksum;
  }

 private:
  const Crypto crypto_;
  const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_;
  bool works_ = false;
};

}  // namespace

std::unique_ptr<RunningChecksum> LinuxChecksums::startSha256() {
  const Crypto crypto = loaded();
  if (!crypto.isThere()) return nullptr;
  return std::make_unique<EvpChecksum>(crypto);
}

}  // namespace zelvo::platform::linux_
