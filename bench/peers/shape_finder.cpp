#include <optional>

#include "bench/peers/peers.h"
#include "bench/stopwatch.h"
#include "evaluation/file_error.h"
#include "orvandel/orvandel.hpp"

namespace orvandel::bench {
namespace {

v1::ImageView ViewOf(const tImage& image) {
  const std::ptrdiff_t stride = image.height > 1 ? image.row[1] - image.row[0] : image.width;
  return {image.row[0], image.width, image.height, stride};
}

/// By way of its public face, with default options.
class ShapeFinder : public evaluation::Finder {
 public:
  evaluation::PatternFrame Learn(const evaluation::ImageFile& pattern) override {
    try {
      pattern_ = v1::Pattern::Learn(ViewOf(*pattern.image));
    } catch (const v1::Error& error) {
      throw evaluation::FileError(pattern.path, error.what());
    }
    const auto origin = pattern_->Origin();
    return {pattern_->Width(), pattern_->Height(), {origin.x, origin.y}};
  }

  evaluation::Finding Find(const evaluation::ImageFile& scene) override {
    v1::FindOptions options;
    options.min_scale = kLeastScale;
    options.max_scale = kMostScale;
    evaluation::Finding finding;
    v1::Result result;
    finding.time_ms =
        1e3 * SecondsOf([&] { result = finder_.Find(*pattern_, ViewOf(*scene.image), options); });
    finding.status = result.empty() ? "not_found" : "found";
    for (const v1::Match& match : result)
      finding.matches.push_back(
          {{match.x, match.y, match.angle, match.scale}, 100 * match.score, true});
    return finding;
  }

 private:
  std::optional<v1::Pattern> pattern_;
  v1::Finder finder_;
};

}  // namespace

std::unique_ptr<evaluation::Finder> MakeShapeFinder() {
  return std::make_unique<ShapeFinder>();
}

}  // namespace orvandel::bench
