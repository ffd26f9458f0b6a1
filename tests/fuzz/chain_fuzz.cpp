// The chain and the displacements of small films that any bytes describe, against twins that try everything.
#include <cstdio>
#include <cstdlib>
#include <span>

#include "salvage/chain/best_chain.h"
#include "salvage/chain/displacements.h"
#include "tests/support/literal_chain.h"
#include "tests/support/literal_cover.h"
#include "tests/support/small_films.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvo;
  std::size_t at = 0;
  const auto choose = [&](std::uint32_t below) {
    std::uint32_t number = at < size ? data[at++] : 0;
    if (below > 256 && at < size) number |= static_cast<std::uint32_t>(data[at++]) << 8U;
    return number % below;
  };
  const tests::SmallFilm film = tests::smallFilm(choose);
  const auto chain = salvage::linkChunks(film.candidates, film.ends, film.dataEnd);
  const auto facts = salvage::learnStreams(film.candidates, chain);
  if (salvage::bestChain(film.candidates, chain, facts) !=
      tests::literal::bestChain(film.candidates, film.dataEnd, film.ends, facts)) {
    std::fputs("the chain differs from its twin's\n", stderr);
    std::abort();
  }
  const auto cover = salvage::coverEntries(film.entries, film.candidates, film.indexBegin, film.dataEnd);
  const auto twin = tests::literal::Cover(film.entries, film.candidates, film.indexBegin, film.dataEnd).run();
  if (cover.values != twin.values || cover.ofEntry != twin.ofEntry || cover.isClaimed != twin.isClaimed) {
    std::fputs("the displacements differ from the twin's\n", stderr);
    std::abort();
  }
  return 0;
}
