#include "orvandel/classic/crawler.h"

#include "contours/point_arrays.h"
#include "orvandel/classic/edge_record.h"

CCrawler::CCrawler()
    : edgeIm(nullptr),
      x(nullptr),
      y(nullptr),
      g(nullptr),
      f(nullptr),
      contours(nullptr),
      edge_threshold(0),
      contour_count(0),
      point_count(0),
      point_capacity(0),
      contour_capacity(0),
      step(1.0),
      min_size(30),
      max_size(10000),
      min_dist(0.6) {}

CCrawler::~CCrawler() {
  orvandel::FreeArrays(*this);
  delete edgeIm;
}
