#include "platform/linux/checksums.h"

#include <openssl/evp.h>

namespace zelvo::platform::linux_ {

namespace {

struct Free {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

class EvpChecksum final : public RunningChecksum {
 public:
  explicit EvpChecksum(std::unique_ptr<EVP_MD_CTX, Free> context) : context_(std::move(context)) {}

  void add(std::span<const std::byte> bytes) override {
    works_ = works_ && EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1;
  }

  std::optional<Sha256> finish() override {
    Sha256 checksum{};
    unsigned length = 0;
    works_ = works_ && EVP_DigestFinal_ex(context_.get(), checksum.data(), &length) == 1 && length == checksum.size();
    if (!works_) return std::nullopt;
    return checksum;
  }

 private:
  std::unique_ptr<EVP_MD_CTX, Free> context_;
  bool works_ = true;
};

}  // namespace

std::unique_ptr<RunningChecksum> LinuxChecksums::startSha256() {
  std::unique_ptr<EVP_MD_CTX, Free> context(EVP_MD_CTX_new());
  if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1) return nullptr;
  return std::make_unique<EvpChecksum>(std::move(context));
}

}  // namespace zelvo::platform::linux_
