/* Orvandel in C: learns a geometric pattern from a grey image and finds it in others, at any
   rotation and a range of scales; and finds sub-pixel edge points, for those who want no more.
   orvandel.hpp has the same for C++17.

   Conventions
   - Pixels: (0, 0) is the centre of the top-left pixel; x runs right, y down.
   - Angles: radians; from x to y, so that positive ones turn clockwise on the screen.
   - Status: functions that can fail return ORV_OK or what went wrong, and leave a sentence for
     orv_last_message.
   - Structs that may grow begin with their size, `struct_size`. The orv_..._init functions set it
     and every default.
   - Ownership: what a ..._create or orv_pattern_learn hands out is the caller's, who gives it back
     to the ..._destroy of its kind. Images are only read, and only during the call.
   - Threads: different handles may be used by different threads at the same time. A pattern is
     never changed once it is learnt, and may be used by many threads at once; edges and finders
     serve one thread at a time.
   - The same input gives the same bits on every system, at every vector width and with any number
     of threads. */

#ifndef ORVANDEL_ORVANDEL_H
#define ORVANDEL_ORVANDEL_H

/* NOLINTBEGIN(modernize-use-using, modernize-deprecated-headers): this is C */

#include <stddef.h>
#include <stdint.h>

/* ORVANDEL_BUILDING is set while the library itself is compiled, ORVANDEL_STATIC for who links it
   statically. */
#if defined(_WIN32)
#if defined(ORVANDEL_BUILDING)
#define ORV_API __declspec(dllexport)
#elif defined(ORVANDEL_STATIC)
#define ORV_API
#else
#define ORV_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define ORV_API __attribute__((visibility("default")))
#else
#define ORV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------- status */

/** What the functions return. */
enum orv_status {
  ORV_OK = 0,
  ORV_INVALID_ARGUMENT = 1, /**< null, not a number, out of its range; nothing was done */
  ORV_OUT_OF_MEMORY = 2,    /**< never told as "not found" */
  ORV_NO_EDGES = 3,         /**< the image to learn from has too few edges to be found by */
  ORV_INTERNAL_ERROR = 4    /**< a mistake of the library */
};

/** Version of the library, "major.minor.patch". */
ORV_API const char* orv_version(void);

/** The status as words, for logs: "invalid argument". Never null. */
ORV_API const char* orv_status_text(int status);

/** What was wrong with this thread's last call that failed, as a sentence in English; empty when
    none has failed. Valid until the thread's next call that fails. */
ORV_API const char* orv_last_message(void);

/* ---------------------------------------------------------------- images */

/** A grey image of the caller's. */
typedef struct orv_image {
  size_t struct_size; /**< sizeof(orv_image) */
  /** Of the top row: bytes, or 16-bit numbers of this machine's byte order, aligned as such. */
  const void* pixels;
  int32_t width;  /**< pixels, 1 and more */
  int32_t height; /**< pixels, 1 and more */
  /** Bytes from a row to the one below; negative for bottom-up images; whole pixels. */
  int64_t stride;
  int32_t bits_per_pixel; /**< 8 or 16 */
} orv_image;

/** Describes an image whose rows follow each other without gaps; change `stride` where they do
    not. */
ORV_API void orv_image_init(orv_image* image, const void* pixels, int32_t width, int32_t height,
                            int32_t bits_per_pixel);

/* ---------------------------------------------------------------- edge points */

/** A point on an edge, where the grey value changes fastest along the gradient. */
typedef struct orv_edge_point {
  float x;         /**< pixels */
  float y;         /**< pixels */
  float direction; /**< of the gradient, to the brighter side: radians in (-pi, pi] */
  float strength;  /**< grey levels per pixel: 0.375 h for a sharp step of height h */
} orv_edge_point;

/** How to detect. */
typedef struct orv_edge_options {
  size_t struct_size;
  /** Grey levels per pixel, 0 and more; a point of just that strength stays, weaker ones are left
      out. Default 12, a step of 32 levels, for 8-bit images; 16-bit ones have a scale of their own,
      say 12 * 16 for a camera of 12 bits. */
  double least_strength;
} orv_edge_options;

/** A detector with its working storage, and the points of the image that it saw last. */
typedef struct orv_edges orv_edges;

/** @param struct_size  sizeof(orv_edge_options). */
ORV_API void orv_edge_options_init(orv_edge_options* options, size_t struct_size);

/** @param edges  receives the new handle, null on failure. */
ORV_API int orv_edges_create(orv_edges** edges);

/** Null is ignored. */
ORV_API void orv_edges_destroy(orv_edges* edges);

/** Finds the edge points of an image: local maxima of the gradient across the edge, with positions
    to a few thousandths of a pixel where there is no noise. The three outermost rows and columns
    hold none. After a failure there are no points, never those of an earlier image. Images of the
    size of an earlier one need no new memory.

    @param options  null for the defaults. */
ORV_API int orv_edges_detect(orv_edges* edges, const orv_image* image,
                             const orv_edge_options* options);

/** Number of points; 0 before the first detection, and for null. */
ORV_API size_t orv_edges_count(const orv_edges* edges);

/** The points, row of pixels by row of pixels from the top, from left to right within a row. Valid
    until the next detection or the end of the handle; null where there are none. */
ORV_API const orv_edge_point* orv_edges_points(const orv_edges* edges);

/** Index of the first point of a row of pixels, so that row y has the points from that of y to that
    of y + 1. Rows below 0 count as 0, those beyond the image have all points before them. */
ORV_API size_t orv_edges_row_begin(const orv_edges* edges, int32_t row);

/* ---------------------------------------------------------------- patterns */

/** A learnt pattern. */
typedef struct orv_pattern orv_pattern;

/** How to learn. */
typedef struct orv_learn_options {
  size_t struct_size;
  int32_t has_origin; /**< not 0: the origin is the point below. Default 0: the image's centre */
  double origin_x;    /**< pixels of the pattern image; the point whose place matches tell */
  double origin_y;
  /** 8 bits, as large as the image: not 0 where the pattern is. Default null: everywhere. */
  const orv_image* mask;
  /** Whether to learn how well chance imitates the pattern, against which scores are set. Default
      1. 0 saves most of the time, but the default score is then too low for simple patterns. */
  int32_t learns_chance;
} orv_learn_options;

/** @param struct_size  sizeof(orv_learn_options). */
ORV_API void orv_learn_options_init(orv_learn_options* options, size_t struct_size);

/** Learns a pattern from an image of it. The pixels are copied.

    @param options  null for the defaults.
    @param pattern  receives the new handle, null on failure.
    @return         ORV_NO_EDGES where the image has too few edges to be found by: flat, tiny, all
                    masked. */
ORV_API int orv_pattern_learn(const orv_image* image, const orv_learn_options* options,
                              orv_pattern** pattern);

/** Null is ignored. A finder that found it keeps what it needs. */
ORV_API void orv_pattern_destroy(orv_pattern* pattern);

/** What is known of a pattern. */
typedef struct orv_pattern_info {
  size_t struct_size;
  int32_t width; /**< of the image that it was learnt from, pixels */
  int32_t height;
  double origin_x; /**< pixels of that image */
  double origin_y;
  int32_t num_edge_points; /**< at full resolution */
} orv_pattern_info;

/** @param info  its struct_size is set by the caller: sizeof(orv_pattern_info). */
ORV_API int orv_pattern_get_info(const orv_pattern* pattern, orv_pattern_info* info);

/* ---------------------------------------------------------------- finding */

/** Which way round the contrast may be, compared with the learnt image. */
enum orv_polarity {
  ORV_POLARITY_SAME = 0,
  ORV_POLARITY_REVERSED = 1, /**< bright and dark exchanged all over */
  ORV_POLARITY_EITHER = 2,   /**< one of the two */
  ORV_POLARITY_MIXED = 3     /**< each stretch of the outline on its own */
};

/** What to look for and how. Angles turn clockwise on the screen. */
typedef struct orv_find_options {
  size_t struct_size;
  double angle_start; /**< radians; default -pi */
  /** Radians from the start on, 0 and more; a whole turn and more are all angles. Default 2 pi. */
  double angle_extent;
  double min_scale; /**< above 0; default 0.5 */
  double max_scale; /**< min_scale and more; the same fixes the scale. Default 2 */
  /** 0 to 1; a match of just that score is reported. Default: what suits every pattern. */
  double min_score;
  /** Share of the smaller one's area that two matches may have in common, 0 to 1; default 0.5. */
  double max_overlap;
  int64_t time_budget_us; /**< microseconds; 0, the default, for no limit */
  int32_t max_matches;    /**< default 1; 0 for all */
  int32_t polarity;       /**< of enum orv_polarity; default ORV_POLARITY_MIXED */
  int32_t num_threads; /**< 1 and more; default 1. The results have the same bits with any number */
} orv_find_options;

/** @param struct_size  sizeof(orv_find_options). */
ORV_API void orv_find_options_init(orv_find_options* options, size_t struct_size);

/** An instance of a pattern in a scene. */
typedef struct orv_match {
  size_t struct_size;
  double x; /**< where the pattern's origin lies, scene pixels */
  double y;
  double angle;                 /**< radians in (-pi, pi] */
  double scale;                 /**< scene pixels per pattern pixel */
  double scene_from_pattern[6]; /**< rows (a, b, c) and (d, e, f): pattern pixel (u, v) lies at
                                     (a u + b v + c, d u + e v + f) in the scene */
  /** Of (x, y, angle, scale), row by row: pixels, radians, 1. What was given, not found, has the
      variance 0; an angle that the pattern does not tell, as a full circle, an infinite one. */
  double covariance[16];
  double score;     /**< 0 to 1 */
  double coverage;  /**< share of the pattern's visible edge points that the scene has, 0 to 1 */
  double clutter;   /**< edges inside the outline that the pattern has not, per edge point */
  double fit_error; /**< RMS distance of the edges, scene pixels */
  double contrast;  /**< strength of the edges relative to the learnt ones */
  double share_outside; /**< of the pattern's edge points, beyond the scene's border, 0 to 1 */
  int32_t is_reversed;  /**< not 0: most edges have bright and dark exchanged */
} orv_match;

/** What a search came to. Times are microseconds. */
typedef struct orv_result {
  size_t struct_size;
  size_t num_matches;
  /** Not 0: the budget ended the search; the matches are those found until then. */
  int32_t timed_out;
  double pyramid_us;
  double response_maps_us;
  double coarse_search_us;
  double tracking_us;
  double refinement_us;
  double scoring_us;
  double total_us;
} orv_result;

/** The working storage of searches, and the result of the last one. */
typedef struct orv_finder orv_finder;

/** @param finder  receives the new handle, null on failure. */
ORV_API int orv_finder_create(orv_finder** finder);

/** Null is ignored. */
ORV_API void orv_finder_destroy(orv_finder* finder);

/** Looks for a pattern in a scene. Finding nothing is no failure: the result then has no matches.
    After a failure there is no result, never that of an earlier scene.

    @param options  null for the defaults. */
ORV_API int orv_finder_find(orv_finder* finder, const orv_pattern* pattern, const orv_image* scene,
                            const orv_find_options* options);

/** @param result  its struct_size is set by the caller: sizeof(orv_result). */
ORV_API int orv_finder_get_result(const orv_finder* finder, orv_result* result);

/** A match of the last search, the best one first.

    @param index  below the result's num_matches.
    @param match  its struct_size is set by the caller: sizeof(orv_match). */
ORV_API int orv_finder_get_match(const orv_finder* finder, size_t index, orv_match* match);

#ifdef __cplusplus
}
#endif

/* NOLINTEND(modernize-use-using, modernize-deprecated-headers) */

#endif
