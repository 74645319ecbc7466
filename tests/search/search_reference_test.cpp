// The search and its reference agree bit for bit, over random scenes and parameters.

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/segment_engine.h"
#include "tests/search/small_scenes.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

void SetParameters(QRSIS& search, const ReferenceParameters& p) {
  search.SetParams(p.edge_threshold, p.min_size, p.max_size, static_cast<int>(p.accept_score));
  search.SetMinMaxScale(p.min_scale, p.max_scale);
}

/// The engine's own search tries as many poses as the reference.
void CompareNumbersOfPoses(const ImagePtr& pattern, const ImagePtr& scene,
                           const ReferenceParameters& parameters,
                           const ReferenceSearch& reference) {
  SegmentEngine engine(pattern,
                       {parameters.edge_threshold, parameters.min_size, parameters.max_size});
  engine.options.accept_score = parameters.accept_score;
  engine.options.min_scale = parameters.min_scale;
  engine.options.max_scale = parameters.max_scale;
  EXPECT_EQ(engine.Find(scene).num_poses, reference.num_poses());
}

/// Searches both ways; returns the result, of which every bit is compared.
Found CompareSearches(const ImagePtr& pattern, const ImagePtr& scene,
                      const ReferenceParameters& parameters) {
  const ScriptedCounter no_hurry(FrozenTime());
  QRSIS search;
  search.Initialize();
  SetParameters(search, parameters);
  ReferencePattern reference;
  const int status = TrainOn(search, pattern);
  EXPECT_EQ(status, ReferenceTrain(reference, CopyOf(pattern).get(), parameters));
  if (status != 0) return {status};

  ReferenceSearch reference_search(reference, parameters);
  const Found expected = reference_search.LookForIt(CopyOf(scene).get(), [] { return false; });
  const Found found = LookFor(search, scene);
  ExpectSameResult(found, expected);
  CompareNumbersOfPoses(pattern, scene, parameters, reference_search);
  return found;
}

TEST(SearchReference, AgreesOnRandomScenes) {
  const ImagePtr pattern = ImageOf(SmallPart());
  int num_found = 0;
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    num_found += CompareSearches(pattern, RandomScene(random, SmallPart()), {}).score > 60 ? 1 : 0;
  }
  EXPECT_GT(num_found, 20);  // the scenes are no mere noise
}

TEST(SearchReference, AgreesUnderOtherParameters) {
  const ImagePtr pattern = ImageOf(SmallPart());
  for (std::uint32_t seed = 101; seed <= 140; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    ReferenceParameters parameters;
    parameters.edge_threshold = random.Integer(5, 40);
    parameters.min_size = random.Integer(1, 40);
    parameters.max_size = random.OneIn(4) ? 150 : 100000;
    parameters.accept_score = random.Integer(-10, 110);
    parameters.min_scale = random.Real(-0.1, 1.2);
    parameters.max_scale = random.OneIn(4) ? std::numeric_limits<double>::infinity()
                                           : parameters.min_scale + random.Real(-0.1, 2);
    CompareSearches(pattern, RandomScene(random, SmallPart()), parameters);
  }
}

TEST(SearchReference, AgreesOnPatternsThatAreScenes) {
  // Patterns of several contours, joined seams and much clutter.
  for (std::uint32_t seed = 201; seed <= 220; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    const ImagePtr pattern = RandomScene(random, SmallPart());
    ReferenceParameters parameters;
    parameters.accept_score = random.OneIn(2) ? 80 : 101;
    const Found itself = CompareSearches(pattern, pattern, parameters);
    EXPECT_EQ(itself.status, 0);
    CompareSearches(pattern, RandomScene(random, SmallPart()), parameters);
  }
}

TEST(SearchReference, AgreesOnPureNoise) {
  const ImagePtr pattern = ImageOf(SmallPart());
  for (std::uint32_t seed = 301; seed <= 306; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    const ImagePtr noise = MakeImage(120, 100, [&](int, int) { return random.Integer(0, 255); });
    CompareSearches(pattern, noise, {});
    CompareSearches(noise, pattern, {});
  }
}

/// A rectangle with rounded corners whose upper side rises a little to the right, through the
/// boundary of two pixel rows. Its contour begins where the upper row does, in the middle of that
/// side, so the side's two pieces are joined.
ImagePtr ImageWithSeamInASide(double degrees, double shift) {
  const render::Part rounded = PartOf(
      render::RoundedPolygon({{{-30, -20}, 8}, {{30, -20}, 8}, {{30, 20}, 8}, {{-30, 20}, 8}}),
      {100, 80});
  return render::RenderScene({{rounded, {.x = 50, .y = 40 + shift, .angle_deg = degrees}}}, {},
                             {100, 80});
}

TEST(SearchReference, AgreesOnSegmentsOfNoLength) {
  // A joined segment has no length, so that its scale is 0, infinite or not a number. Bounds that
  // admit all of these have them scored.
  ReferenceParameters parameters;
  parameters.min_scale = 0;
  parameters.max_scale = std::numeric_limits<double>::infinity();
  parameters.accept_score = 101;
  int num_joined = 0;
  for (const double degrees : {-0.5, -1.0, -1.5}) {
    for (const double shift : {0.0, 0.25, 0.5, 0.75}) {
      SCOPED_TRACE(std::to_string(degrees) + " degrees, shift " + std::to_string(shift));
      const ImagePtr pattern = ImageWithSeamInASide(degrees, shift);
      ReferencePattern reference;
      ASSERT_EQ(ReferenceTrain(reference, CopyOf(pattern).get(), parameters), 0);
      for (const CLineSegment& s : reference.segments)
        num_joined += s.length == 0 ? 1 : 0;
      CompareSearches(pattern, pattern, parameters);
      CompareSearches(pattern, pattern, {});
    }
  }
  EXPECT_GT(num_joined, 0);
}

}  // namespace
}  // namespace orvandel::test
