#include "orvandel/classic/sub_canny.h"

#include "edges/edge_detection.h"
#include "edges/gradient_tables.h"
#include "platform/image_ptr.h"

int SubCanny(tImage* image, int threshold, CEdgeImgComplement* edges) {
  if (image != nullptr) orvandel::DetectEdges(orvandel::RowsOf(*image), threshold, edges);
  return 0;
}

void InitalizeSubCannyTable(void) {
  orvandel::AcquireGradientTables();
}

void DeleteSubCannyTable(void) {
  orvandel::ReleaseGradientTables();
}
