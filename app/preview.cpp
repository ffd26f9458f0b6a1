// Looking at the rebuilt file:
// 1. The engine hands it over; it is loaded into the movie view.
// 2. `preview` hands it to the outside player or plays it here, with a hint; pressed again, or at the end, it stops.
#include "app/controller.h"
#include "app/texts.h"
#include "engine/globals.h"

namespace zelvo::app {

using platform::logLine;
using State = platform::Button::State;

void Orlin_Repair_AVIAppDelegate::setMovieView(const std::string& path) {
  setUnipath(path);
  rebuiltSize_ = sizeOf(path);
  // Deliberate: loaded from the chosen scratch path, not from the argument. They are one when the engine calls.
  platform::LoadedMovie loaded = services_.movies.movieWithFile(engine::internalpath.get());
  if (loaded.error) logLine(services_.log, "%@", *loaded.error);
  video.set(loaded.movie);
  outlets.movieview.setMovie(std::move(loaded.movie));
}

void Orlin_Repair_AVIAppDelegate::preview(platform::Button*) {
  if (!waitForRebuiltFile()) {
    const bool wasOn = outlets.previewbutton.state() == State::off;
    outlets.previewbutton.setState(wasOn ? State::on : State::off);
    return;
  }

  // Deliberate: one registration more at every press; the earlier ones are kept.
  services_.notifications.addObserver(
      this, platform::kMovieDidEndNotification,
      [this](const platform::Notification& notification) { movieDidEnd(notification); });
  mplayerinstalled = mplayerpathinApplicationsfolder &&
                     services_.fileManager.exists(services_.paths.mapped(*mplayerpathinApplicationsfolder));

  const std::shared_ptr<platform::Movie> movie = video.get();
  if (outlets.previewbutton.state() == State::off) {
    if (movie) movie->stop();
    outlets.main3.setEnabled(true);
    outlets.savebutton.setEnabled(true);
    outlets.previewbutton.setEnabled(true);
    return;
  }
  logLine(services_.log, "path=%@", engine::path.get());
  showHintFor(mplayerinstalled);
  if (mplayerinstalled) {
    services_.workspace.openFile(engine::internalpath.get(), texts::kPlayer);
    return;
  }
  outlets.main3.setEnabled(false);
  outlets.savebutton.setEnabled(false);
  if (movie) {
    movie->gotoBeginning();
    movie->play();
  }
}

void Orlin_Repair_AVIAppDelegate::showHintFor(bool playerIsThere) {
  outlets.downloadmplayertext1.setStringValue(playerIsThere ? "" : texts::kHint1);
  outlets.downloadmplayertext2.setStringValue(playerIsThere ? "" : texts::kHint2);
  outlets.downloadmplayertext3.setStringValue(playerIsThere ? "" : texts::kHint3);
  outlets.downloadmplayertext4.setStringValue(playerIsThere ? "" : texts::kHint4);
  outlets.clickherebutton.setEnabled(!playerIsThere);
  outlets.clickherebutton.setHidden(playerIsThere);
}

void Orlin_Repair_AVIAppDelegate::movieDidEnd(const platform::Notification& notification) {
  auto* movie = dynamic_cast<platform::Movie*>(notification.object);
  video.set(movie == nullptr ? nullptr : movie->weak_from_this().lock());
  outlets.main3.setEnabled(true);
  outlets.help3.setEnabled(true);
  outlets.savebutton.setEnabled(true);
  outlets.previewbutton.setEnabled(true);
  outlets.previewbutton.setState(State::off);
}

void Orlin_Repair_AVIAppDelegate::clickhere(platform::Button*) {
  services_.workspace.openURL(services_.paths.mapped(texts::kTipsPage));
}

void Orlin_Repair_AVIAppDelegate::PreviewErrorOk(platform::Button*) {
  endAndHide(outlets.PreviewErrorWindow);
  const std::string url = services_.bundle.infoText(texts::kPlayerDownloadUrlKey).value_or("");
  if (!url.empty()) services_.workspace.openURL(url);
}

platform::AttributedText Orlin_Repair_AVIAppDelegate::hyperlinkFromString(std::string_view text,
                                                                          std::string_view withURL) {
  platform::TextAttributes attributes;
  attributes.link = std::string(withURL);
  attributes.font = platform::Font{std::string(texts::kLinkFont), 10.0};
  attributes.foreground = platform::kBlue;
  attributes.underline = platform::UnderlineStyle::single;
  return {{{std::string(text), std::move(attributes)}}};
}

}  // namespace zelvo::app
