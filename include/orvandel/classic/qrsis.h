#pragma once

#include <cstdint>

#include "orvandel/classic/export.h"
#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/line_extracter.h"
#include "orvandel/classic/patt_verify.h"

#if defined(ORVANDEL_PACKED_LAYOUT)
#pragma pack(push, 4)
#endif

namespace orvandel {
struct WindowsLayout;
}

/// Carried by `QRSIS` for its layout; the search forms its pose hypotheses itself.
class ORVANDEL_API CLineHypGen {
 public:
  CLineHypGen();
  virtual ~CLineHypGen();
};

/// Learns a geometric pattern from one 8-bit grey image and finds it in others, at any rotation and
/// within a range of scales.
///
///   QRSIS search;
///   search.Initialize();
///   if (search.TrainIt(pattern) == 0 && search.LookForIt(scene) == 0) {
///     double x, y, angle, scale, score;
///     search.GetFoundPattData(&x, &y, &angle, &scale, &score);
///   }
///
/// Both calls overwrite the image they are given: afterwards it holds an edge map. Pass a copy to keep
/// it. One thread at a time uses an object; different threads may use different objects.
///
/// A copy shares pattern image and contour sets with its source, and assignment releases nothing of
/// its target: destroy only one of such a pair.
class ORVANDEL_API QRSIS {
 public:
  QRSIS();
  QRSIS(const QRSIS& other);
  QRSIS& operator=(const QRSIS& other);
  virtual ~QRSIS();

  /// Makes the two contour sets. Call it once, after construction; a second call abandons the first
  /// pair.
  void Initialize();

  /// Takes effect at the next `TrainIt` or `LookForIt`.
  ///
  /// @param edge_threshold  0 to 252, 16; -1 lets the next training estimate it from its image.
  /// @param min_size,max_size  fewest and most points of a contour, 10 and 100000.
  /// @param accept_score  percent, 80; a hypothesis that reaches it ends the coarse search.
  void SetParams(int edge_threshold, int min_size, int max_size, int accept_score);

  /// Scales (scene size over pattern size) that are tried, 0.25 to 4. The refined scale may leave
  /// them by up to 0.2.
  void SetMinMaxScale(double min_scale, double max_scale);

  /// Sets the search's time budget, 1000000 at first.
  ///
  /// @param timeout_us  microseconds, 0 to 3999000.
  /// @return  false when it was out of range; the nearer bound is then set.
  bool SetTimeOutValue(int timeout_us);

  int GetPatternDx();  ///< width of the image last given to `TrainIt`, pixels
  int GetPatternDy();  ///< its height

  /// `ctd_` handles of the contours of the pattern and of the last scene; the object keeps
  /// ownership.
  void* GetCrawlerPatternData();
  void* GetCrawlerSceneData();

  /// The pattern's reference point: the mean of its contour points, pattern pixels.
  void GetPatternRef(double* x, double* y);

  /// Result of the last `LookForIt`; no pointer may be null.
  ///
  /// @param x,y    scene position of the reference point, pixels.
  /// @param angle  radians, not normalised; positive turns clockwise on the screen (y down).
  /// @param scale  scene size over pattern size.
  /// @param score  percent of the pattern's contour that was found, 0 to 100.
  void GetFoundPattData(double* x, double* y, double* angle, double* scale, double* score);

  /// Learns a pattern.
  ///
  /// @param image  8-bit grey; overwritten. The caller keeps ownership.
  /// @return  0 trained; 1 no contour, or no image; 3 `Initialize` was not called; 4 no line
  ///          segment. The object is trained exactly when 0 is returned.
  int TrainIt(tImage* image);

  /// Writes the pattern image to path + "_qrsi.bmp". False when untrained or when it cannot be
  /// written. The path goes to the image library, whose open implementation takes UTF-8.
  bool SaveKnowledge(const char* path);

  /// Reads path + "_qrsi.bmp" and trains on it with the parameters in force. False when the file
  /// cannot be read; true does not say that the training succeeded.
  bool LoadKnowledge(const char* path);

  /// Finds the pattern in a scene; the result is read with `GetFoundPattData`.
  ///
  /// @param image  8-bit grey; overwritten. The caller keeps ownership. An image of another type, and one
  ///               for whose edges memory lacks, leaves the previous scene's contours to be searched.
  /// @return  0 a pose was determined (weigh its score), or the time ran out before the search
  ///          began (all results 0); 1 untrained; 2 no contour in the scene; 3 `Initialize` was not
  ///          called; 4 no line segment in the scene.
  int LookForIt(tImage* image);

  /// Releases contour sets and pattern image of an object that will be discarded without
  /// destruction. The image pointer stays, so destruction after it releases the image twice.
  void CleanUp();

 private:
  friend struct orvandel::WindowsLayout;

  int _generateAllVerificationPts(void* contours);

  tImage* pattern_image_;
  std::int32_t pattern_width_;
  std::int32_t pattern_height_;
  double spare_numbers_[2];
  double reference_x_;
  double reference_y_;
  double found_x_;
  double found_y_;
  double found_angle_;
  double found_scale_;
  double found_score_;
  std::int32_t timeout_us_;
  void* pattern_contours_;
  void* scene_contours_;
  CLineExtracter pattern_lines_;
  CLineExtracter scene_lines_;
  CLineHypGen hypothesis_generator_;
  CPattVerify verifier_;
  std::int32_t edge_threshold_;
  std::int32_t min_contour_size_;
  std::int32_t max_contour_size_;
  double accept_score_;
  std::int32_t spare_number_;
  double verification_fraction_;
  std::int32_t verification_cap_;
  double min_scale_;
  double max_scale_;
  std::int32_t pattern_lines_tried_;
};

#if defined(ORVANDEL_PACKED_LAYOUT)
#pragma pack(pop)
#endif
