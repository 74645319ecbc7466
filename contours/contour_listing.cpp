// The contours of a set as text, for people.

#include <fstream>
#include <iomanip>
#include <locale>

#include "contours/ctd.h"
#include "contours/point_arrays.h"

int ctd_dump(void* handle, char* path) {
  constexpr int kFileError = 9;
  std::ofstream out;
  out.imbue(std::locale::classic());  // a point as decimal mark, whatever the host's locale
  if (path != nullptr) out.open(path);
  if (!out.is_open()) return kFileError;

  CCrawler& set = orvandel::SetOf(handle);
  const auto records = orvandel::Records(set);
  out << std::fixed << std::setprecision(6);
  out << "Contours: " << records.size() << "; Total of points: " << orvandel::NumPoints(set)
      << "\n";
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
