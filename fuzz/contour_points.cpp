// Contour files that are whole, of any points: chance does not make records that fit each other.

#include <algorithm>

#include "fuzz/byte_source.h"
#include "fuzz/contour_stages.h"
#include "fuzz/files.h"
#include "fuzz/require.h"
#include "fuzz/target.h"
#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"

namespace orvandel::fuzz {
namespace {

/// Steps of up to 8 pixels from point to point, now and then anywhere.
test::TestPoint NextPoint(ByteSource& source, test::TestPoint point) {
  const int kind = source.Byte();
  if (kind < 4) {
    point.x = source.Double();
    point.y = source.Double();
    point.g = source.Double();
  } else {
    point.x += source.SignedByte() / 16.0;
    point.y += source.SignedByte() / 16.0;
    point.g = source.SignedByte() / 32.0;
  }
  point.f = kind % 8 == 7 ? 1 : 0;
  return point;
}

test::TestContour NextContour(ByteSource& source) {
  test::TestContour contour;
  const int head = source.Byte();
  contour.closed = head % 2 != 0;
  test::TestPoint point{double(source.Byte()), double(source.Byte()), 0, 0};
  for (int i = 0; i < 1 + head / 2; ++i) {
    point = NextPoint(source, point);
    contour.points.push_back(point);
  }
  return contour;
}

ContourHandle ContoursFrom(ByteSource& source) {
  constexpr std::size_t kMostContours = 12;
  std::vector<test::TestContour> contours;
  while (!source.IsEmpty() && contours.size() < kMostContours)
    contours.push_back(NextContour(source));
  return test::MakeSet(contours);
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvandel::fuzz;
  static const ScratchFolder folder;
  ByteSource source(data, size);
  const int order = source.Byte();
  const orvandel::ContourHandle set = ContoursFrom(source);
  if (order % 3 != 0) ctd_sort(set.get(), order % 3 - 1);
  ORVANDEL_REQUIRE(ctd_save(set.get(), folder.File("set.ctd").c_str()) == 0);
  ReadAndUseContours(folder.File("set.ctd"));
  return 0;
}
