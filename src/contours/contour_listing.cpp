// The contours of a set as text, for people.

#include <fstream>
#include <iomanip>
#include <locale>
#include <new>

#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"

namespace orvandel {
namespace {

constexpr int kFileError = 9;

int Dump(CCrawler& set, const char* path) {
  std::ofstream out;
  out.imbue(std::locale::classic());  // a point as decimal mark, whatever the host's locale
  if (path != nullptr) out.open(path);
  if (!out.is_open()) return kFileError;

  const auto records = Records(set);
  out << std::fixed << std::setprecision(6);
  out << "Contours: " << records.size() << "; Total of points: " << NumPoints(set) << "\n";
  for (std::size_t i = 0; i < records.size(); ++i) {
    out << "Contour: " << i << "\n";
    out << "Contour points: " << records[i].size << "\n";
    for (std::int32_t k = records[i].start; k < records[i].start + records[i].size; ++k) {
      const auto flag = static_cast<std::int32_t>(set.f[k]);
      out << set.x[k] << "," << set.y[k] << "," << set.g[k] << ", " << flag << " \n";
    }
    out << "\n";
  }
  return 0;
}

}  // namespace
}  // namespace orvandel

int ctd_dump(void* handle, char* path) {
  try {
    return orvandel::Dump(orvandel::SetOf(handle), path);
  } catch (const std::bad_alloc&) {
    return orvandel::kFileError;  // no memory for the stream
  }
}
