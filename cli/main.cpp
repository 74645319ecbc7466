#include "cli/tool.h"

int main(int argc, char** argv) {
  return orvandel::cli::RunTool(argc, argv);
}
