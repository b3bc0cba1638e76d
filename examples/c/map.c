/* SPDX-License-Identifier: MIT */
/* Draws a wafer of a measured lot: map LOT.csv NUMBER MAP.png */
#include <discoplan.h>
#include <stdio.h>
#include <stdlib.h>

static int Complain(void) {
  fprintf(stderr, "%s\n", discoplan_error());
  return 1;
}

static void PrintStatistics(discoplan_wafer* wafer) {
  int64_t count = 0;
  double values[64];
  discoplan_figure_count(&count);
  if (discoplan_wafer_statistics(wafer, values, 64) != DISCOPLAN_OK) return;
  for (int64_t i = 0; i < count; ++i) {
    discoplan_figure figure = {sizeof figure};
    if (discoplan_figure_describe(i, &figure) == DISCOPLAN_OK) {
      printf("%-16s %.6g\n", figure.title, values[i]);
    }
  }
}

int main(int argc, char** argv) {
  discoplan_lot* lot = NULL;
  discoplan_wafer* wafer = NULL;
  discoplan_picture* picture = NULL;
  discoplan_plot_options options = {sizeof options};
  int result = 0;

  if (argc != 4) {
    fprintf(stderr, "usage: map LOT.csv NUMBER MAP.png\n");
    return 2;
  }
  options.colours = "cividis";
  options.bands = 10;
  if (discoplan_read(argv[1], NULL, &lot) != DISCOPLAN_OK ||
      discoplan_lot_wafer(lot, atoi(argv[2]), &wafer) != DISCOPLAN_OK ||
      discoplan_plot(wafer, &options, &picture) != DISCOPLAN_OK ||
      discoplan_picture_save(picture, argv[3]) != DISCOPLAN_OK) {
    result = Complain();
  } else {
    PrintStatistics(wafer);
  }
  discoplan_free(picture);
  discoplan_free(wafer);
  discoplan_free(lot);
  return result;
}
