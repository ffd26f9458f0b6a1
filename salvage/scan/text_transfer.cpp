#include "salvage/scan/text_transfer.h"

#include <algorithm>

namespace zelvo::salvage {

namespace {

constexpr std::size_t kBlock = 65'536;
/// What this much of a film does not show, the rest is not read for.
constexpr std::size_t kSampled = std::size_t{1} << 20U;
constexpr std::byte kReturn{0x0d};
constexpr std::byte kFeed{0x0a};
/// So many line feeds, each after a return, are no chance.
constexpr std::uint64_t kFewestFeeds = 64;
/// Later damage may have brought some feeds in.
constexpr std::uint64_t kMaxLonePercent = 1;

struct Feeds {
  std::uint64_t all = 0;
  std::uint64_t lone = 0;  ///< without a return in front

  [[nodiscard]] bool areText() const { return all >= kFewestFeeds && lone * 100 <= all * kMaxLonePercent; }
  /// Asked again and again: most films are told apart by their first few feeds.
  [[nodiscard]] bool cannotBeText() const { return lone >= kFewestFeeds / 4 && lone * 100 > all * kMaxLonePercent; }
};

/// Reads a block and the byte after it, which says what becomes of the block's last one; what cannot be read is zero.
/// Answers how many of the block's bytes were read.
std::size_t readBlock(platform::ReadableFile& file, std::size_t number, platform::Bytes& window,
                      std::error_code& error) {
  window.resize(kBlock + 1);
  const platform::IoResult result = file.readAt(std::uint64_t{number} * kBlock, window);
  error = result.error;
  std::fill(window.begin() + static_cast<std::ptrdiff_t>(result.count), window.end(), std::byte{0});
  return std::min(result.count, kBlock);
}

bool isAdded(const platform::Bytes& window, std::size_t place) {
  return window[place] == kReturn && window[place + 1] == kFeed;
}

}  // namespace

bool TextTransfer::readAll(const std::function<bool()>& isEnding) {
  const std::uint64_t fileSize = file_.size();
  const auto blocks = static_cast<std::size_t>((fileSize + kBlock - 1) / kBlock);
  platform::Bytes window;
  Feeds feeds;
  std::byte before{0};
  for (std::size_t number = 0; number < blocks; ++number) {
    if (isEnding()) return false;
    std::error_code error;
    readBlock(file_, number, window, error);
    const auto length =
        static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, fileSize - std::uint64_t{number} * kBlock));
    begins_.push_back(size_);
    for (std::size_t i = 0; i < length; ++i) {
      if (window[i] == kFeed) {
        ++feeds.all;
        feeds.lone += before != kReturn ? 1U : 0U;
      }
      before = window[i];
      size_ += isAdded(window, i) ? 0U : 1U;
    }
    const bool isLongEnough = number * kBlock >= kSampled;
    if (feeds.cannotBeText() || (isLongEnough && !feeds.areText())) return false;
  }
  begins_.push_back(size_);
  return feeds.areText();
}

std::unique_ptr<TextTransfer> TextTransfer::find(platform::ReadableFile& file, const std::function<bool()>& isEnding) {
  std::unique_ptr<TextTransfer> found(new TextTransfer(file));
  return found->readAll(isEnding) ? std::move(found) : nullptr;
}

const platform::Bytes& TextTransfer::blockOf(std::size_t number, std::error_code& error) {
  if (held_ != number) {
    platform::Bytes window;
    const std::size_t length = readBlock(file_, number, window, heldError_);
    bytes_.clear();
    for (std::size_t i = 0; i < length; ++i) {
      if (!isAdded(window, i)) bytes_.push_back(window[i]);
    }
    held_ = number;
  }
  error = heldError_;
  return bytes_;
}

void TextTransfer::moveToOriginal(std::vector<ByteSpan>& spans) {
  const std::uint64_t fileSize = file_.size();
  platform::Bytes window;
  std::uint64_t at = 0;  // in the file; rises with the spans
  std::uint64_t place = 0;
  const auto placeOf = [&](std::uint64_t offset) {
    if (offset >= fileSize) return size_ + (offset - fileSize);
    const std::uint64_t number = offset / kBlock;
    if (number + 1 >= begins_.size()) return size_;
    if (window.empty() || at / kBlock != number) {
      std::error_code error;
      readBlock(file_, static_cast<std::size_t>(number), window, error);
      at = number * kBlock;
      place = begins_[static_cast<std::size_t>(number)];
    }
    for (; at < offset; ++at) place += isAdded(window, static_cast<std::size_t>(at % kBlock)) ? 0U : 1U;
    return place;
  };
  for (ByteSpan& span : spans) {
    span.begin = placeOf(span.begin);
    span.end = placeOf(span.end);
  }
}

platform::IoResult TextTransfer::readAt(std::uint64_t offset, std::span<std::byte> into) {
  const std::lock_guard lock(mutex_);
  platform::IoResult result;
  while (result.count < into.size() && offset + result.count < size_) {
    const std::uint64_t at = offset + result.count;
    const auto after = std::ranges::upper_bound(begins_, at);
    const auto number = static_cast<std::size_t>(after - begins_.begin()) - 1;
    const platform::Bytes& block = blockOf(number, result.error);
    const std::uint64_t within = at - begins_[number];
    if (within >= block.size()) break;  // It could not be read so far.
    const std::size_t count =
        std::min<std::size_t>(into.size() - result.count, block.size() - static_cast<std::size_t>(within));
    std::copy_n(block.begin() + static_cast<std::ptrdiff_t>(within), count,
                into.begin() + static_cast<std::ptrdiff_t>(result.count));
    result.count += count;
  }
  if (result.count == into.size()) result.error = {};
  return result;
}

}  // namespace zelvo::salvage
