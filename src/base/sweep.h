#pragma once

namespace orvandel {

/// Most unknowns of one system.
inline constexpr int kMaxUnknowns = 12;

/// A symmetric matrix with room for kMaxUnknowns; both halves are filled in.
struct SymmetricMatrix {
  double at[kMaxUnknowns][kMaxUnknowns] = {};
};

/// Inverts the leading `n` rows and columns of a symmetric positive semidefinite matrix in place, by
/// sweeping its pivots in order.
/// Method: J. H. Goodnight, "A tutorial on the SWEEP operator", The American Statistician 33(3), 1979.
///
/// An unknown whose pivot, with the ones before it swept, is not above 1e-9 of `scale` is not determined:
/// it is held, so that its row and column of the inverse are 0 and the rest is the inverse without it.
///
/// @param scale  n values the pivots are compared with; normally the diagonal itself.
/// @return       number of unknowns that were not held.
int InvertBySweeping(SymmetricMatrix& matrix, int n, const double* scale);

}  // namespace orvandel
