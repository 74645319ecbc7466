#include "contours/contour_listing.h"

#include <fstream>
#include <iomanip>
#include <locale>

namespace orvandel {

bool WriteContourListing(const ContourSetView& contours, const char* path) {
  std::ofstream out;
  out.imbue(std::locale::classic());  // a point as decimal mark, whatever the host's locale
  if (path != nullptr) out.open(path);
  if (!out.is_open()) return false;

  out << std::fixed << std::setprecision(6);
  out << "Contours: " << contours.NumContours() << "; Total of points: " << contours.NumPoints()
      << "\n";
  for (std::size_t i = 0; i < contours.NumContours(); ++i) {
    const ContourView contour = contours[i];
    out << "Contour: " << i << "\n";
    out << "Contour points: " << contours.records[i].size << "\n";
    for (std::size_t k = 0; k < contour.Size(); ++k) {
      const auto flag = static_cast<std::int32_t>(contour.f[k]);
      out << contour.x[k] << "," << contour.y[k] << "," << contour.g[k] << ", " << flag << " \n";
    }
    out << "\n";
  }
  return true;
}

}  // namespace orvandel
