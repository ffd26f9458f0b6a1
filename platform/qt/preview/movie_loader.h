/// Makes the movies of the preview.
#pragma once

#include <string>

#include "platform/movies.h"
#include "platform/qt/preview/movie_preview.h"
#include "platform/qt/preview/open_movies.h"

namespace zelvo::platform::qt {

/// Lifetime: outlives its movies and the last run of the main queue.
class QtMovieLoader final : public MovieLoader {
 public:
  /// Thread: main, after the application object is made and before any worker is.
  explicit QtMovieLoader(const MovieServices& services);
  /// Opens nothing. An error only where no file is named; what is wrong with a file shows when it is first looked at or
  /// played, in the picture's place and in the log. // Decision: preview, A film is open only while it is looked at
  /// Thread: any.
  [[nodiscard]] LoadedMovie movieWithFile(const std::string& path) override;

 private:
  OpenMovies openMovies_;
};

}  // namespace zelvo::platform::qt
