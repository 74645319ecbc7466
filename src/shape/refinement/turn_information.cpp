#include "shape/refinement/turn_information.h"

#include "base/sweep.h"

namespace orvandel::shape {
namespace {

/// Of the gradients' squares, times those of their distances, so much must run around the centre: a circle
/// with a mark of a thousandth of its length still tells its angle.
constexpr double kLeastShare = 0.001;
/// Noise is known to some ten per cent.
constexpr double kNoiseMargin = 2.0;

struct Moments {
  double turn_square = 0.0;   ///< of the derivative with the angle
  double lever_square = 0.0;  ///< of gradients times distances
  double distance_square = 0.0;
};

/// Sums about a centre.
Moments SumAbout(Point centre, const Strip& strip, const BlurLevel& level) {
  Moments moments;
  for (std::size_t i = 0; i < strip.x.size(); ++i) {
    if (!(strip.presence[i] > 0.0F)) continue;
    const Point gradient = {static_cast<double>(level.dx[i]), static_cast<double>(level.dy[i])};
    const Point arm = {static_cast<double>(strip.x[i]) - centre.x,
                       static_cast<double>(strip.y[i]) - centre.y};
    const double turn = gradient.y * arm.x - gradient.x * arm.y;
    moments.turn_square += turn * turn;
    moments.lever_square += Dot(gradient, gradient) * Dot(arm, arm);
    moments.distance_square += Dot(arm, arm);
  }
  return moments;
}

/// The point about which the derivative with the angle has the smallest sum of squares. A shift of the centre
/// changes the derivative by a share of those along x and y.
Point CentreOfTurn(const Strip& strip, const BlurLevel& level) {
  SymmetricMatrix matrix;
  double right[2] = {};
  for (std::size_t i = 0; i < strip.x.size(); ++i) {
    if (!(strip.presence[i] > 0.0F)) continue;
    const double gradient[2] = {static_cast<double>(level.dx[i]), static_cast<double>(level.dy[i])};
    const double turn = gradient[1] * static_cast<double>(strip.x[i]) -
                        gradient[0] * static_cast<double>(strip.y[i]);
    for (int a = 0; a < 2; ++a) {
      right[a] += turn * gradient[a];
      for (int b = 0; b < 2; ++b)
        matrix.at[a][b] += gradient[a] * gradient[b];
    }
  }
  const double scale[2] = {matrix.at[0][0], matrix.at[1][1]};
  InvertBySweeping(matrix, 2, scale);
  return {matrix.at[1][0] * right[0] + matrix.at[1][1] * right[1],
          -(matrix.at[0][0] * right[0] + matrix.at[0][1] * right[1])};
}

}  // namespace

bool TellsAngle(const Strip& strip, const BlurLevel& level, double gradient_variance) {
  const Moments about = SumAbout(CentreOfTurn(strip, level), strip, level);
  const double noise = gradient_variance * about.distance_square;
  return about.turn_square > kLeastShare * about.lever_square + kNoiseMargin * noise;
}

}  // namespace orvandel::shape
