// Training and search over pairs of images, with any parameters. With time enough the result is
// that of the reference search, bit for bit; with less it is a pose with a score, or none.

#include <cmath>

#include <gtest/gtest.h>

#include "fuzz/byte_source.h"
#include "fuzz/images.h"
#include "fuzz/require.h"
#include "fuzz/target.h"
#include "tests/reference/chain_comparison.h"
#include "tests/search/scripted_counter.h"

namespace orvandel::fuzz {
namespace {

struct Input {
  ImagePtr pattern;
  ImagePtr scene;
  test::ReferenceParameters parameters;
  int expiring_read = 0;
};

ImagePtr ImageFrom(ByteSource& source) {
  constexpr int kLongestSide = 64;
  const int width = 1 + source.Byte() % kLongestSide;
  const int height = 1 + source.Byte() % kLongestSide;
  return PaintedImage(source, width, height, source.Byte() % 8);
}

/// The scales are any numbers, out of order too.
Input InputFrom(ByteSource source) {
  Input input;
  input.parameters.edge_threshold = source.SignedByte();
  if (input.parameters.edge_threshold == -1)
    input.parameters.edge_threshold = 0;  // asks for an estimate
  input.parameters.min_size = source.SignedByte();
  input.parameters.max_size = source.Byte() < 200 ? 100000 : source.Byte();
  input.parameters.accept_score = source.SignedByte();
  if (source.Byte() % 2 != 0) {
    input.parameters.min_scale = source.Double();
    input.parameters.max_scale = source.Double();
  }
  input.expiring_read = source.InRange(0, 2000);
  input.pattern = ImageFrom(source);
  input.scene = ImageFrom(source);
  return input;
}

/// Without a threshold, which is estimated.
void Configure(QRSIS& search, const test::ReferenceParameters& parameters) {
  constexpr int kEstimate = -1;
  search.Initialize();
  search.SetParams(kEstimate, parameters.min_size, parameters.max_size,
                   static_cast<int>(parameters.accept_score));
  search.SetMinMaxScale(parameters.min_scale, parameters.max_scale);
}

/// The other way about, twice with one object, in a time that runs out somewhere.
void SearchInAHurry(const Input& input) {
  QRSIS search;
  Configure(search, input.parameters);
  const int trained = test::TrainOn(search, input.scene);
  ORVANDEL_REQUIRE(trained == 0 || trained == 1 || trained == 4);
  for (const ImagePtr* scene : {&input.pattern, &input.scene}) {
    const test::ScriptedCounter hurry(test::TimeThatExpiresAtRead(1 + input.expiring_read));
    const test::Found found = test::LookFor(search, *scene);
    const bool has_status = found.status == 0 || found.status == 2 || found.status == 4;
    ORVANDEL_REQUIRE(trained == 0 ? has_status : found.status == 1);
    ORVANDEL_REQUIRE(!(found.score < 0 || found.score > 100));
  }
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  testing::GTEST_FLAG(break_on_failure) = true;
  const orvandel::fuzz::Input input = orvandel::fuzz::InputFrom({data, size});
  orvandel::test::ExpectSameSearch(input.pattern, input.scene, input.parameters);
  orvandel::fuzz::SearchInAHurry(input);
  return 0;
}
