/// The window's own elements (own_outlets.h), which remember what they were told. They write no events: these are for
/// the given elements.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/own_outlets.h"

namespace zelvo::platform::headless {

/// Thread: main.
class HeadlessChosenFilm final : public ChosenFilmView {
 public:
  void show(ChosenFilm film) override { film_ = std::move(film); }
  /// The film shown last; nothing before there was one.
  [[nodiscard]] const std::optional<ChosenFilm>& film() const { return film_; }

 private:
  std::optional<ChosenFilm> film_;
};

/// Thread: main.
class HeadlessRunProgress final : public RunProgressView {
 public:
  void follow(std::function<RunProgress()> look) override { look_ = std::move(look); }
  /// What the line would tell now.
  [[nodiscard]] RunProgress look() const { return look_ ? look_() : RunProgress{}; }

 private:
  std::function<RunProgress()> look_;
};

/// Thread: any.
class HeadlessFilmReport final : public FilmReportView {
 public:
  void show(const FilmReport& report) override;
  void clear() override;
  /// What it tells now; nothing after `clear`.
  [[nodiscard]] std::optional<FilmReport> report() const;
  /// Told after each change. Set before there are other threads.
  std::function<void()> changed;

 private:
  mutable std::mutex mutex_;
  std::optional<FilmReport> report_;
};

/// Thread: any.
class HeadlessRejection final : public RejectionView {
 public:
  void show(Rejection reason) override;
  [[nodiscard]] std::optional<Rejection> reason() const;

 private:
  mutable std::mutex mutex_;
  std::optional<Rejection> reason_;
};

}  // namespace zelvo::platform::headless
