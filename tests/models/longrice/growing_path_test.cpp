// A path that grows sample by sample and one that is there at once are the same to the last bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "links.h"
#include "models/longrice/parameter_error.h"

namespace zel::longrice {
namespace {

using Bits = std::vector<std::uint64_t>;

// Every number of a prediction, bit by bit; nothing where the model has no loss.
Bits bitsOf(const Model& model, const GrowingPath& path, double receiverHeight) {
  Bits bits;
  const auto add = [&bits](double value) { bits.push_back(std::bit_cast<std::uint64_t>(value)); };
  try {
    const PathTerrain terrain = path.describe(receiverHeight);
    add(terrain.distance);
    add(terrain.deltaH);
    for (const auto& pair : {terrain.structuralHeights, terrain.effectiveHeights, terrain.horizonDistances,
                             terrain.horizonAngles})
      for (const double value : pair) add(value);
    bits.push_back(static_cast<std::uint64_t>(terrain.mode));
    const Prediction prediction = model.predict(path, receiverHeight);
    add(prediction.freeSpace());
    add(prediction.reference().attenuation);
    bits.push_back(static_cast<std::uint64_t>(prediction.reference().method));
    for (const double reliability : {-2.0, 0.0, 1.5})
      for (const double confidence : {-1.0, 0.0, 2.5}) add(prediction.loss(reliability, confidence));
  } catch (const ParameterError& error) {
    bits.push_back(static_cast<std::uint64_t>(error.parameter()));
  }
  return bits;
}

struct Case {
  Parameters parameters;
  Ground ground;
  double spacing;
  double transmitter;
  double receiver;
};

Case anyCase(Random& random, std::size_t samples) {
  return {anyParameters(random), anyGround(random, samples), random.decades(5, 2000),
          random.decades(0.5, 500), random.decades(0.5, 500)};
}

// Grows through all samples and holds the chosen prefixes against paths made for them alone.
void expectPrefixesAlike(const Case& given, std::span<const std::size_t> prefixes) {
  const Model model(given.parameters);
  GrowingPath grown = model.path(given.spacing, given.transmitter);
  std::size_t next = 0;
  for (std::size_t count = 1; count <= given.ground.size() && next < prefixes.size(); ++count) {
    grown.append(given.ground[count - 1]);
    if (count != prefixes[next]) continue;
    ++next;
    GrowingPath whole = model.path(given.spacing, given.transmitter);
    whole.append(std::span(given.ground).first(count));
    ASSERT_EQ(bitsOf(model, grown, given.receiver), bitsOf(model, whole, given.receiver))
        << count << " of " << given.ground.size() << " samples";
  }
}

TEST(GrowingPath, IsTheWholePathToTheLastBitAfterEverySampleOfShortProfiles) {
  Random random(91);
  for (int run = 0; run < 1000; ++run) {
    const std::size_t samples = 2 + random.below(80);
    std::vector<std::size_t> every;
    for (std::size_t count = 2; count <= samples; ++count) every.push_back(count);
    expectPrefixesAlike(anyCase(random, samples), every);
    if (HasFatalFailure()) FAIL() << "run " << run;
  }
}

TEST(GrowingPath, IsTheWholePathToTheLastBitAfterChosenSamplesOfLongProfiles) {
  Random random(92);
  for (int run = 0; run < 200; ++run) {
    const std::size_t samples = 500 + random.below(5000);
    std::vector<std::size_t> some;
    for (std::size_t count = 2 + random.below(50); count < samples; count += 1 + random.below(samples / 8))
      some.push_back(count);
    some.push_back(samples);
    expectPrefixesAlike(anyCase(random, samples), some);
    if (HasFatalFailure()) FAIL() << "run " << run;
  }
}

TEST(GrowingPath, DoesNotMindInWhatPiecesItsGroundComes) {
  Random random(93);
  for (int run = 0; run < 200; ++run) {
    const Case given = anyCase(random, 3 + random.below(700));
    const Model model(given.parameters);
    GrowingPath pieces = model.path(given.spacing, given.transmitter);
    for (std::size_t done = 0; done < given.ground.size();) {
      const std::size_t count = std::min(random.below(150), given.ground.size() - done);
      pieces.append(std::span(given.ground).subspan(done, count));
      done += count;
    }
    const GrowingPath whole = pathOver(model, given.ground, given.spacing, given.transmitter);
    ASSERT_EQ(bitsOf(model, pieces, given.receiver), bitsOf(model, whole, given.receiver)) << run;
  }
}

TEST(GrowingPath, GivesTheSameHoweverOftenItIsAsked) {
  Random random(94);
  const Case given = anyCase(random, 300);
  const Model model(given.parameters);
  const GrowingPath path = pathOver(model, given.ground, given.spacing, given.transmitter);
  const Bits once = bitsOf(model, path, given.receiver);
  bitsOf(model, path, given.receiver + 200);
  EXPECT_EQ(bitsOf(model, path, given.receiver), once);
}

}  // namespace
}  // namespace zel::longrice
