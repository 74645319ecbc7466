#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>
#include <variant>

#include "api/errors.h"
#include "api/images.h"
#include "api/sized_structs.h"
#include "orvandel/orvandel.h"
#include "shape/edges/edge_detection.h"

using orvandel::api::Guarded;
using orvandel::api::Require;
using orvandel::shape::edges::EdgePoint;

struct orv_edges {
  orvandel::shape::edges::EdgeWorkspace workspace;
  orvandel::shape::edges::EdgePoints points;
};

namespace {

// The host reads the points where the detector wrote them.
static_assert(std::is_standard_layout_v<EdgePoint> && sizeof(EdgePoint) == sizeof(orv_edge_point));
static_assert(offsetof(EdgePoint, x) == offsetof(orv_edge_point, x));
static_assert(offsetof(EdgePoint, y) == offsetof(orv_edge_point, y));
static_assert(offsetof(EdgePoint, direction) == offsetof(orv_edge_point, direction));
static_assert(offsetof(EdgePoint, strength) == offsetof(orv_edge_point, strength));

orv_edge_options DefaultEdgeOptions() {
  orv_edge_options options = {};
  options.struct_size = sizeof options;
  options.least_strength = static_cast<double>(orvandel::shape::edges::kUsualLeastStrength);
  return options;
}

/// The smallest float that is not below; the largest one for what lies beyond all floats.
float RoundedUp(double value) {
  constexpr float kLargest = std::numeric_limits<float>::max();
  if (value >= static_cast<double>(kLargest)) return kLargest;
  const auto rounded = static_cast<float>(value);
  return static_cast<double>(rounded) < value ? std::nextafter(rounded, INFINITY) : rounded;
}

}  // namespace

void orv_edge_options_init(orv_edge_options* options, size_t struct_size) {
  orvandel::api::InitSized(DefaultEdgeOptions(), struct_size, options);
}

int orv_edges_create(orv_edges** edges) {
  return Guarded([&] {
    Require(edges != nullptr, "There is no place for the new edges: the pointer is null.");
    *edges = nullptr;
    *edges = new orv_edges;
  });
}

void orv_edges_destroy(orv_edges* edges) {
  delete edges;
}

int orv_edges_detect(orv_edges* edges, const orv_image* image, const orv_edge_options* options) {
  const int status = Guarded([&] {
    Require(edges != nullptr, "The edges are null.");
    const orvandel::ImageView view = orvandel::api::ViewOf(image, "The image is null.");
    const orv_edge_options asked = orvandel::api::ReadSized(options, DefaultEdgeOptions());
    Require(asked.least_strength >= 0 && std::isfinite(asked.least_strength),
            "The least strength of edges must be 0 or more.");
    std::visit(
        [&](const auto& pixels) {
          DetectEdgePoints(pixels, RoundedUp(asked.least_strength), edges->workspace,
                           edges->points);
        },
        view);
  });
  if (status != ORV_OK && edges != nullptr) edges->points.Clear();
  return status;
}

size_t orv_edges_count(const orv_edges* edges) {
  return edges == nullptr ? 0 : edges->points.All().size();
}

const orv_edge_point* orv_edges_points(const orv_edges* edges) {
  if (orv_edges_count(edges) == 0) return nullptr;
  return reinterpret_cast<const orv_edge_point*>(edges->points.All().data());
}

size_t orv_edges_row_begin(const orv_edges* edges, int32_t row) {
  if (edges == nullptr || row <= 0) return 0;
  if (row >= edges->points.NumRows()) return edges->points.All().size();
  return static_cast<size_t>(edges->points.InRow(row).data() - edges->points.All().data());
}
