#include "deep/deep_repair.h"

#include "deep/texts.h"
#include "platform/paths.h"

namespace zelvo::deep {

DeepRepair::DeepRepair(const DeepServices& services, const platform::DeepOutlets& outlets)
    : services_(services), outlets_(outlets) {
  outlets_.deeprepairbutton.setEnabled(false);
}

DeepRepair::~DeepRepair() { programEnds(); }

void DeepRepair::wire(platform::Actions&) {}

void DeepRepair::start() {}

bool DeepRepair::takeFilms(const std::vector<std::string>&) { return false; }

void DeepRepair::hideOffers() {
  offered_.reset();
  outlets_.refusedoffer.hide();
  outlets_.partlyoffer.hide();
}

void DeepRepair::filmChosen(const std::string& path) {
  chosen_ = path;
  hideOffers();
  outlets_.deeprepairbutton.setEnabled(true);
}

void DeepRepair::choiceCleared() {
  chosen_.reset();
  hideOffers();
  outlets_.deeprepairbutton.setEnabled(false);
}

void DeepRepair::filmRefused(const std::string& path) {
  offered_ = path;
  const std::string name = platform::nameOf(path);
  outlets_.refusedoffer.show(platform::filled(services_.translator.translated(texts::kRefusedOffer), {name}));
}

void DeepRepair::filmJudged(const std::string& path, platform::FilmVerdict verdict) {
  hideOffers();
  if (verdict == platform::FilmVerdict::good) return;
  offered_ = path;
  outlets_.partlyoffer.show(services_.translator.translated(texts::kPartlyOffer));
}

bool DeepRepair::mayClose() { return true; }

void DeepRepair::programEnds() {}

}  // namespace zelvo::deep
