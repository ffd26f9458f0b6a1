/// The elements of the deep repair, which remember what they were told. They write no events.
/// Thread: main.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/deep_outlets.h"

namespace zelvo::platform::headless {

class HeadlessDeepPages final : public DeepPages {
 public:
  void show(DeepPage page) override { page_ = page; }
  [[nodiscard]] DeepPage shown() const override { return page_; }
  [[nodiscard]] bool isChoosing() const override { return choosing && page_ == DeepPage::none; }
  bool choosing = true;  ///< the first page of the tab view is seen without a sheet

 private:
  DeepPage page_ = DeepPage::none;
};

class HeadlessDeepOffer final : public DeepOffer {
 public:
  void show(std::string_view sentence) override { sentence_ = sentence; }
  void hide() override { sentence_.reset(); }
  /// Nothing while it is hidden.
  [[nodiscard]] const std::optional<std::string>& sentence() const { return sentence_; }

 private:
  std::optional<std::string> sentence_;
};

class HeadlessDeepProgress final : public DeepProgressView {
 public:
  void follow(std::function<DeepProgress()> look) override { look_ = std::move(look); }
  [[nodiscard]] DeepProgress look() const { return look_ ? look_() : DeepProgress{}; }

 private:
  std::function<DeepProgress()> look_;
};

class HeadlessDeepResult final : public DeepResultView {
 public:
  void show(DeepResult result) override {
    result_ = std::move(result);
    comparison_.reset();
  }
  void showComparison(const DeepComparison& comparison) override { comparison_ = comparison; }
  void setTimeReceiver(std::function<void(double seconds)> receiver) override { receiver_ = std::move(receiver); }
  /// What is shown; nothing before there was anything.
  [[nodiscard]] const std::optional<DeepResult>& result() const { return result_; }
  [[nodiscard]] const std::optional<DeepComparison>& comparison() const { return comparison_; }
  /// As a click into the picture.
  void pointAt(double seconds) const {
    if (receiver_) receiver_(seconds);
  }

 private:
  std::optional<DeepResult> result_;
  std::optional<DeepComparison> comparison_;
  std::function<void(double seconds)> receiver_;
};

class HeadlessQueue final : public QueueView {
 public:
  void show(const std::vector<QueuedFilm>& films) override { films_ = films; }
  void update(std::size_t film, const QueuedFilm& told) override { films_.at(film) = told; }
  void setOpener(std::function<void(std::size_t film)> opener) override { opener_ = std::move(opener); }
  void setRemover(std::function<void(std::size_t film)> remover) override { remover_ = std::move(remover); }
  [[nodiscard]] const std::vector<QueuedFilm>& films() const { return films_; }
  void open(std::size_t film) const { opener_(film); }
  void remove(std::size_t film) const { remover_(film); }

 private:
  std::vector<QueuedFilm> films_;
  std::function<void(std::size_t film)> opener_;
  std::function<void(std::size_t film)> remover_;
};

}  // namespace zelvo::platform::headless
