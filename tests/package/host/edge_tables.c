/* A host in C: the edge detector's functions go by their plain names. */

#include <stddef.h>

struct tImage;
struct edge_record;

extern int SubCanny(struct tImage* image, int threshold, struct edge_record* edges);
extern void InitalizeSubCannyTable(void);
extern void DeleteSubCannyTable(void);

int main(void) {
  InitalizeSubCannyTable();
  InitalizeSubCannyTable(); /* the tables are there already */
  DeleteSubCannyTable();
  DeleteSubCannyTable();
  InitalizeSubCannyTable();
  if (SubCanny(NULL, 16, NULL) != 0) return 1; /* no image: nothing to do */
  DeleteSubCannyTable();
  return 0;
}
