#pragma once

#include <cstdint>

#include "orvandel/classic/export.h"
#include "orvandel/classic/imgutil_i.h"

class CEdgeImgComplement;

// The contour functions. A handle is a contour set (`CCrawler`) made by `ctd_create`.
//
// Positions are in pixels, x right and y down, with the centre of the pixel in column c, row r near
// (c + 0.5, r + 0.5). Directions are in radians; a direction g is the vector (cos g, -sin g).
// Statuses: 0 success, 4 out of memory, 9 file, 13 image is not 8-bit grey (or null, or too large).
// Contour index: 0 <= i < ctd_contour_count. Point index: 0 <= k < ctd_contour_size. Neither is
// checked, and a handle is null only where that is allowed. One thread at a time uses a set.

// ---- Life cycle ---------------------------------------------------------------------------------

/// Makes an empty set; null when memory cannot be had. Release it with `ctd_delete`.
ORVANDEL_API void* ctd_create();

/// Releases a set and all that it owns. Null does nothing.
ORVANDEL_API void ctd_delete(void* handle);

/// Copies contours, counts, capacities, edge threshold, step and size limits; the destination keeps
/// its own `min_dist` and edge record. A set copied onto itself, and a copy that memory does not
/// allow, change nothing.
ORVANDEL_API void ctd_copy(void* source, void* destination);

// ---- Access -------------------------------------------------------------------------------------

ORVANDEL_API int ctd_contour_count(void* handle);
ORVANDEL_API int ctd_point_count(void* handle);
ORVANDEL_API int ctd_contour_size(void* handle, int i);
ORVANDEL_API int ctd_contour_closed(void* handle, int i);  ///< 1 closed, 0 open
ORVANDEL_API double ctd_contour_x(void* handle, int i, int k);
ORVANDEL_API double ctd_contour_y(void* handle, int i, int k);
ORVANDEL_API double ctd_contour_g(void* handle, int i, int k);
ORVANDEL_API std::uint32_t ctd_contour_f(void* handle, int i, int k);
ORVANDEL_API void ctd_set_contour_f(void* handle, int i, int k, std::uint32_t value);

/// The contour's points as arrays of `ctd_contour_size` elements. Writing changes the contour. They
/// belong to the set and last until it is crawled, resampled, loaded, copied into or deleted; not
/// for empty sets.
ORVANDEL_API double* ctd_contour_xa(void* handle, int i);
ORVANDEL_API double* ctd_contour_ya(void* handle, int i);
ORVANDEL_API double* ctd_contour_ga(void* handle, int i);
ORVANDEL_API std::int32_t* ctd_contour_fa(void* handle, int i);

ORVANDEL_API int ctd_min_size(void* handle);
/// Sets the smallest contour size; the next `ctd_crawl` overwrites it with its own argument.
ORVANDEL_API void ctd_set_min_size(void* handle, int min_size);

/// The edge record of the last crawl; null before the first. The set keeps ownership.
ORVANDEL_API CEdgeImgComplement* ctd_edgeIm(void* handle);

/// Number of points whose flag is 0, of one contour and of all.
ORVANDEL_API int ctd_contour_active_point_count(void* handle, int i);
ORVANDEL_API int ctd_active_point_count(void* handle);

// ---- Crawling -----------------------------------------------------------------------------------

/// Replaces the set's contours by those of an image: edge points from `SubCanny`, followed through
/// their 8-neighbours from both ends of each chain.
///
/// @param image           8-bit grey, below 65536 pixels each way. Overwritten: it ends as an
///                        edge map without the edge pixels that were followed.
/// @param edge_threshold  as for `SubCanny`.
/// @param min_size,max_size  fewest and most points of a contour that is kept.
/// @return  0, also when memory is short (the contours are then as they were); 13 for an image that
///          is null, of another type or too large, with nothing changed.
ORVANDEL_API int ctd_crawl(void* handle, tImage* image, int edge_threshold, int min_size,
                           int max_size);

/// Proposes an edge threshold from the histogram of the image's gradient magnitudes.
///
/// @param handle  not used.
/// @param image   8-bit grey; not changed.
/// @return  1 to 255; 10 where the histogram gives none (a flat or tiny image, memory short); 13
///          for an image that is null or of another type.
ORVANDEL_API int ctd_compute_edge_strength(void* handle, tImage* image);

// ---- Conditioning -------------------------------------------------------------------------------

/// Smooths the positions of every contour of 6 or more points by a five-point mean. Returns 0.
ORVANDEL_API int ctd_average(void* handle);

/// Replaces the points by evenly spaced ones, `step` apart, with interpolated directions and flags;
/// the first and last point of a contour stay. Returns 0; when memory is short the set is as it
/// was.
ORVANDEL_API int ctd_resample(void* handle);

/// Orders the contours by size: largest first when `descending` is not 0, else smallest first.
/// Contours of equal size keep their order. Returns 0.
ORVANDEL_API int ctd_sort(void* handle, int descending);

/// Mean position of all points; not a number when there are none. Returns 0.
ORVANDEL_API int ctd_centroid(void* handle, double* cx, double* cy);

/// Extreme coordinates over all points; `other`, where not null, receives the partner coordinate of
/// the first point that has the extreme. Without points: -999999999 or 999999999, `other`
/// untouched.
ORVANDEL_API double ctd_maxx(void* handle, double* other);
ORVANDEL_API double ctd_minx(void* handle, double* other);
ORVANDEL_API double ctd_maxy(void* handle, double* other);
ORVANDEL_API double ctd_miny(void* handle, double* other);
ORVANDEL_API void ctd_bbox(void* handle, double* min_x, double* min_y, double* max_x,
                           double* max_y);

// ---- Files and drawing --------------------------------------------------------------------------
// Contour files and listings take their path as the C library's fopen does, on Windows in the
// system's code page; image files take theirs as the image library does, which is UTF-8 in ours.

/// Writes the binary contour file. Returns 0, or 9 when the file cannot be opened or written whole
/// (a part of it may be left).
ORVANDEL_API int ctd_save(void* handle, char* path);

/// Replaces the set's contours by those of a file written by `ctd_save`. The file is trusted: give
/// it only files of known origin, and others to `orvandel::LoadContoursChecked`.
/// @return  0; 9 when it cannot be opened, with the set unchanged; 4 when memory for it cannot be
///          had or a count is negative, with the set empty.
ORVANDEL_API int ctd_load(void* handle, char* path);

/// Lists the contours in a text file, with the line ends of the system. Returns 0, or 9 when the file
/// cannot be opened or memory is short.
ORVANDEL_API int ctd_dump(void* handle, char* path);

/// Draws the points into an image, displaced by (dx, dy).
///
/// @param value       grey value of a point.
/// @param mark_value  grey value of a 9-pixel direction mark at every fifth point; 0 for no marks.
/// @return  0.
ORVANDEL_API int ctd_create_img(void* handle, tImage* image, double dx, double dy,
                                std::uint8_t value, std::uint8_t mark_value);

/// Draws the points with grey value 250 into a new image, just large enough, and writes it; the
/// format goes by the path's extension. Returns 0, also when nothing could be written.
ORVANDEL_API int ctd_save_img(void* handle, char* path);

// The exported functions take `char*`, as hosts link against them; none writes to the path.
inline int ctd_save(void* handle, const char* path) {
  return ctd_save(handle, const_cast<char*>(path));
}
inline int ctd_load(void* handle, const char* path) {
  return ctd_load(handle, const_cast<char*>(path));
}
inline int ctd_dump(void* handle, const char* path) {
  return ctd_dump(handle, const_cast<char*>(path));
}
inline int ctd_save_img(void* handle, const char* path) {
  return ctd_save_img(handle, const_cast<char*>(path));
}
