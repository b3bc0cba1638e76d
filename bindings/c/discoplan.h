/* SPDX-License-Identifier: MIT */
#ifndef DISCOPLAN_H
#define DISCOPLAN_H

/*
 * Plots and statistics of measured semiconductor wafers, for any language that calls C (C99).
 *
 *     discoplan_sites sites = {sizeof sites};
 *     sites.count = 49;
 *     sites.x.data = x;                          // float[49], mm from the wafer's centre
 *     sites.y.data = y;                          // Y up
 *     sites.value.data = thickness;
 *     discoplan_wafer* wafer = NULL;
 *     discoplan_picture* picture = NULL;
 *     if (discoplan_wafer_new(&sites, NULL, &wafer) != DISCOPLAN_OK ||
 *         discoplan_plot(wafer, NULL, &picture) != DISCOPLAN_OK ||
 *         discoplan_picture_save(picture, "map.png") != DISCOPLAN_OK) {
 *       fprintf(stderr, "%s\n", discoplan_error());
 *     }
 *     discoplan_free(picture);
 *     discoplan_free(wafer);
 *
 * This interface is the stable one: what is here keeps its meaning in all versions with the same
 * number behind the library's name. New versions add functions, and fields at the ends of structs.
 *
 * Structs that begin with `size` get sizeof the struct there. All their other fields may be zero,
 * which stands for the usual; a struct that ends before the first version's last field, or that
 * asks for something this version doesn't know, is refused.
 *
 * Handles are looked up, never followed: a null, freed or wrong one gives DISCOPLAN_BAD_HANDLE.
 * Each is freed once by discoplan_free; freeing NULL does nothing. A handle stays good for the call
 * that uses it, also if another thread frees it meanwhile.
 *
 * Every function returns a status, but for the two that say otherwise. What went wrong is told by
 * discoplan_error() to the thread that made the call. Results are set only by DISCOPLAN_OK, but
 * that handles and pointers are set to null otherwise.
 *
 * Texts are UTF-8, file names too. Texts and arrays that come out belong to the handle that they
 * were asked from and stay until it is freed, unless a function says less.
 *
 * Any number of threads may use one wafer, lot, picture or result at once. A control is used by one
 * thread at a time: a second one waits.
 */

#include <stddef.h>
#include <stdint.h>

#if defined(DISCOPLAN_C_STATIC)
#define DISCOPLAN_API
#elif defined(_WIN32) && defined(DISCOPLAN_C_BUILDING)
#define DISCOPLAN_API __declspec(dllexport)
#elif defined(_WIN32)
#define DISCOPLAN_API __declspec(dllimport)
#elif defined(__GNUC__)
#define DISCOPLAN_API __attribute__((visibility("default")))
#else
#define DISCOPLAN_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t discoplan_status;
enum {
  DISCOPLAN_OK = 0,
  DISCOPLAN_BAD_HANDLE = 1,   /* null, freed, or of another kind */
  DISCOPLAN_BAD_ARGUMENT = 2, /* a null pointer, a short struct, an option out of its range */
  DISCOPLAN_BAD_DATA = 3,     /* measured data that can't be taken: the text tells which */
  DISCOPLAN_NOT_FOUND = 4,    /* no such file */
  DISCOPLAN_BAD_FILE = 5,     /* a file that can't be written */
  DISCOPLAN_BAD_TYPE = 6,     /* a value of a type that a member doesn't take */
  DISCOPLAN_NO_MEMBER = 7,    /* a member, event or child that a control doesn't have */
  DISCOPLAN_NO_MEMORY = 8,
  DISCOPLAN_FAILED = 9 /* anything else, such as a machine without fonts */
};

typedef struct discoplan_wafer discoplan_wafer;
typedef struct discoplan_lot discoplan_lot;
typedef struct discoplan_picture discoplan_picture;
typedef struct discoplan_result discoplan_result;
typedef struct discoplan_control discoplan_control;

/* The library's version, such as "0.1.0". Gives the text itself; it stays. */
DISCOPLAN_API const char* discoplan_version(void);
/* What the calling thread's last failing call says, in one line; "" before any. Gives the text
 * itself; it stays until the thread's next failing call. */
DISCOPLAN_API const char* discoplan_error(void);
/* Frees a handle of any kind, and what it handed out. */
DISCOPLAN_API discoplan_status discoplan_free(void* handle);

/* ---- Wafers ---- */

enum { DISCOPLAN_FLOAT32 = 0, DISCOPLAN_FLOAT64 = 1 };

/* Numbers in the caller's memory, which is read during the call and not kept. */
typedef struct discoplan_array {
  const void* data; /* needs no alignment */
  int64_t stride;   /* bytes from one number to the next, may be negative; 0: side by side */
  int32_t type;     /* DISCOPLAN_FLOAT32, DISCOPLAN_FLOAT64 */
  int32_t reserved;
} discoplan_array;

/* Measured points: positions in mm from the wafer's centre, Y up, values in their own unit. */
typedef struct discoplan_sites {
  uint32_t size;
  uint32_t reserved;
  int64_t count; /* 1 to 32767 */
  discoplan_array x;
  discoplan_array y;
  discoplan_array value;
} discoplan_sites;

enum { DISCOPLAN_NOTCH = 0, DISCOPLAN_FLAT = 1, DISCOPLAN_NO_MARK = 2 };
enum { DISCOPLAN_BOTTOM = 0, DISCOPLAN_LEFT = 1, DISCOPLAN_TOP = 2, DISCOPLAN_RIGHT = 3 };

typedef struct discoplan_wafer_options {
  uint32_t size;
  int32_t skip_invalid; /* 1: leave out sites with a number that is none, and count them; else
                           they are refused */
  double diameter;      /* mm; 0: the smallest standard wafer that holds all sites */
  double test_diameter; /* mm, of the measured area; 0: 6 less, unless a site lies outside that */
  const char* name;     /* title of plots */
  const char* quantity; /* "Thickness" */
  const char* unit;     /* "nm" */
  int32_t orientation;  /* DISCOPLAN_NOTCH, ... */
  int32_t notch_side;   /* DISCOPLAN_BOTTOM, ... */
  int32_t edge_given;   /* 1: test_diameter is the diameter less twice edge_exclusion */
  int32_t reserved;
  double edge_exclusion; /* mm */
} discoplan_wafer_options;

/* A wafer of these sites; the options may be NULL. */
DISCOPLAN_API discoplan_status discoplan_wafer_new(const discoplan_sites* sites,
                                                   const discoplan_wafer_options* options,
                                                   discoplan_wafer** wafer);

typedef struct discoplan_wafer_info {
  uint32_t size;          /* set by the caller */
  int32_t may_be_several; /* 1: half of the sites or more repeat a position, as those of several
                             wafers do; sites_text, pictures and messages of batches tell */
  int64_t sites;
  int64_t left_out; /* of those measured */
  double diameter;
  double test_diameter;
  const char* name;
  const char* quantity;
  const char* unit;
  const char* sites_text; /* "49 of 52 sites; 3 infinite numbers" */
  int64_t repeated;       /* sites where another one came before */
} discoplan_wafer_info;

DISCOPLAN_API discoplan_status discoplan_wafer_describe(discoplan_wafer* wafer,
                                                        discoplan_wafer_info* info);
/* The sites, `sites` numbers each. */
DISCOPLAN_API discoplan_status discoplan_wafer_sites(discoplan_wafer* wafer, const float** x,
                                                     const float** y, const float** value);

/* A figure of merit. */
typedef struct discoplan_figure {
  uint32_t size; /* set by the caller */
  int32_t unit;  /* 0 that of the values, 1 percent, 2 that of the values for each mm, 3 degrees */
  const char* key;
  const char* title;
  const char* formula;
  const char* source;
} discoplan_figure;

DISCOPLAN_API discoplan_status discoplan_figure_count(int64_t* count);
/* The figure of that number, from 0. */
DISCOPLAN_API discoplan_status discoplan_figure_describe(int64_t number, discoplan_figure* figure);
/* All figures in that order; not a number for one that has no meaning for the wafer, as sigma of a
 * single value. `capacity` counts the numbers that there is room for. */
DISCOPLAN_API discoplan_status discoplan_wafer_statistics(discoplan_wafer* wafer, double* values,
                                                          int64_t capacity);
/* The same for some of them: bit i of `figures` asks for figure i, 0 for all. Those not asked for
 * are not computed, and not a number. */
DISCOPLAN_API discoplan_status discoplan_wafer_figures(discoplan_wafer* wafer, uint64_t figures,
                                                       double* values, int64_t capacity);

/* Inverse-distance-squared means of the four nearest sites at points in mm, `count` of them; not a
 * number outside the test area, and for fewer than four sites. */
DISCOPLAN_API discoplan_status discoplan_wafer_interpolate(discoplan_wafer* wafer, int64_t count,
                                                           const discoplan_array* x,
                                                           const discoplan_array* y, float* values);

enum { DISCOPLAN_IDW4 = 0, DISCOPLAN_SMOOTH = 1 };

/* Points in rows from top to bottom: row j, column i lies at (x0 + i * step, y0 - j * step) mm.
 * With a step of 0 they are the middles of `columns` x `rows` cells over the wafer's square, which
 * are equal in number then. */
typedef struct discoplan_lattice {
  uint32_t size;
  int32_t columns;
  int32_t rows;
  int32_t method; /* DISCOPLAN_IDW4, or DISCOPLAN_SMOOTH: the thin-plate spline of modern maps */
  double x0;
  double y0;
  double step;
} discoplan_lattice;

/* Sets columns * rows values, not a number outside the test area. */
DISCOPLAN_API discoplan_status discoplan_wafer_lattice(discoplan_wafer* wafer,
                                                       const discoplan_lattice* lattice,
                                                       float* values, int64_t capacity);

/* `wafer` minus `other` at the sites of `wafer`: site by site within 0.1 mm, else interpolated,
 * which is counted if `interpolated` isn't NULL, and said in the name. Known units that differ give
 * DISCOPLAN_BAD_DATA. */
DISCOPLAN_API discoplan_status discoplan_wafer_minus(discoplan_wafer* wafer, discoplan_wafer* other,
                                                     int64_t* interpolated,
                                                     discoplan_wafer** difference);
/* The mean of `count` wafers at the sites of the first one, likewise. Wafers of quantities with
 * different names give DISCOPLAN_BAD_DATA, too. */
DISCOPLAN_API discoplan_status discoplan_wafers_mean(discoplan_wafer* const* wafers, int64_t count,
                                                     int64_t* interpolated, discoplan_wafer** mean);

/* The wafer as bytes, with all that it knows, for another process: the same wafer comes of them by
 * discoplan_wafer_unpack of the same or a later version on any system. With `bytes` NULL, only
 * their number is given. */
DISCOPLAN_API discoplan_status discoplan_wafer_pack(discoplan_wafer* wafer, uint8_t* bytes,
                                                    int64_t capacity, int64_t* count);
/* Other bytes give DISCOPLAN_BAD_DATA and do no harm. */
DISCOPLAN_API discoplan_status discoplan_wafer_unpack(const uint8_t* bytes, int64_t count,
                                                      discoplan_wafer** wafer);

/* ---- Files ---- */

typedef struct discoplan_read_options {
  uint32_t size;
  int32_t skip_invalid;      /* 1: leave out rows that can't be read, and count them */
  const char* columns;       /* "X,Y,VALUE"; NULL: found by their names */
  const char* parameters;    /* values to read, with commas between them; "all" for all */
  const char* by;            /* columns that tell wafers apart, with commas between them */
  const char* wafers;        /* names, slots or ranges of slots, with commas between them */
  const char* where;         /* a condition on rows: "MSE < 12 and Slot != 3" */
  const char* unit;          /* of positions where the file gives none: mm, cm, um, in */
  int32_t corner;            /* 1: positions count from the lower left corner */
  int32_t thin;              /* 1: leave out sites of a wafer with too many */
  double diameter;           /* mm; 0: as for wafers */
  double test_diameter;      /* mm; sites outside are left out */
  int32_t edge_given;        /* 1: sites nearer to the edge than edge_exclusion are left out */
  int32_t sites;             /* of a binary file; 0: as many as its size tells */
  double edge_exclusion;     /* mm */
  double pitch_width;        /* mm; positions are whole numbers of dies then */
  double pitch_height;       /* mm */
  const char* value_unit;    /* of the values, in place of the file's; NULL: the file's */
  const char* drop_outliers; /* "1.5iqr" or "3.5mad"; NULL: all values stay */
} discoplan_read_options;

/* Reads tables, lot exports, KLARF and binary files; the content tells which. */
DISCOPLAN_API discoplan_status discoplan_read(const char* path,
                                              const discoplan_read_options* options,
                                              discoplan_lot** lot);
/* The wafers, those of the first parameter first. */
DISCOPLAN_API discoplan_status discoplan_lot_count(discoplan_lot* lot, int64_t* count);
/* A new handle to the wafer of that number, from 0. */
DISCOPLAN_API discoplan_status discoplan_lot_wafer(discoplan_lot* lot, int64_t number,
                                                   discoplan_wafer** wafer);
/* What was left out of the file and what may be wrong with it, a line each; "" for nothing. */
DISCOPLAN_API discoplan_status discoplan_lot_notes(discoplan_lot* lot, const char** notes);

/* ---- Pictures ---- */

enum { DISCOPLAN_MODERN = 0, DISCOPLAN_CLASSIC = 1 };
enum {
  DISCOPLAN_DARK = 1,
  DISCOPLAN_TRANSPARENT = 2,
  DISCOPLAN_NO_LEGEND = 4,
  DISCOPLAN_VALUES = 8, /* written beside the sites of a map */
  DISCOPLAN_NO_ISOLINES = 16,
  DISCOPLAN_NO_DOTS = 32,
  DISCOPLAN_LIMITED = 64, /* `low` and `high` count */
  DISCOPLAN_CUT = 128,    /* `cut` counts */
  DISCOPLAN_CONTROL_LIMITS = 256
};

typedef struct discoplan_plot_options {
  uint32_t size;
  int32_t look;     /* DISCOPLAN_MODERN, DISCOPLAN_CLASSIC: as the controls draw */
  const char* kind; /* 2D, 2DS, 2DC, 2DN, 3D, 3DS, 3DB, histo, linescan; NULL: 2D */
  int32_t flags;    /* DISCOPLAN_DARK, ...; classic: NO_LEGEND and LIMITED alone */
  int32_t bands;    /* steps of the colour scale; 0: continuous */
  int32_t width;    /* pixels, 50 to 10000; 0: 800 x 600 */
  int32_t height;
  double width_mm; /* instead of pixels, 20 to 2000 */
  double height_mm;
  double dpi; /* of a size in mm; 0: 300 */
  double low; /* limits of the colour scale */
  double high;
  const char* colours;   /* "viridis", "cividis_r", "vik", ...; NULL: the look's own */
  int32_t method;        /* DISCOPLAN_SMOOTH where 0 or 1, DISCOPLAN_IDW4 for -1 */
  int32_t bins;          /* of a histogram; 0: as many as the values call for */
  const char* title;     /* NULL: the wafer's name */
  const char* font;      /* NULL: Arial, for which Liberation Sans stands in; modern look alone */
  const char* font_file; /* a font to use before those of the machine, and its bold one */
  const char* bold_font_file;
  double sigma_range;   /* of sigma maps, in standard deviations; 0: 1, or 0.5 classic */
  double cut[4];        /* of a line scan: from x, y to x, y in mm */
  double lower_control; /* of a histogram */
  double upper_control;
} discoplan_plot_options;

/* Draws a wafer; the options may be NULL. */
DISCOPLAN_API discoplan_status discoplan_plot(discoplan_wafer* wafer,
                                              const discoplan_plot_options* options,
                                              discoplan_picture** picture);
/* Draws a lot: its wafers in small plots of one colour scale, 25 on a page, and charts of them. The
 * scale is that of the limits given, or else the range of all values without outlying ones. `title`
 * stands above all; a size is that of a page, A4 across for 0. Modern look alone. A PDF file has
 * page after page, other pictures have them below each other. */
DISCOPLAN_API discoplan_status discoplan_sheet(discoplan_wafer* const* wafers, int64_t count,
                                               const discoplan_plot_options* options,
                                               discoplan_picture** picture);

DISCOPLAN_API discoplan_status discoplan_picture_size(discoplan_picture* picture, int32_t* width,
                                                      int32_t* height);
/* Four bytes a pixel: red, green, blue, alpha, not premultiplied; rows from top to bottom, `stride`
 * bytes apart, or side by side for 0. */
DISCOPLAN_API discoplan_status discoplan_picture_rgba(discoplan_picture* picture, uint8_t* pixels,
                                                      int64_t capacity, int64_t stride);

enum { DISCOPLAN_PNG = 0, DISCOPLAN_SVG = 1, DISCOPLAN_PDF = 2 };

/* The bytes of a file. In the classic look SVG and PDF are a page as the control prints it: the
 * plot in its frame, the wafer's mark and the legend. The picture that discoplan_control_picture
 * gives has pixels alone. */
DISCOPLAN_API discoplan_status discoplan_picture_encode(discoplan_picture* picture, int32_t format,
                                                        const uint8_t** bytes, int64_t* count);
/* The file appears whole or not at all; its ending tells the format: .png, .svg, .pdf. */
DISCOPLAN_API discoplan_status discoplan_picture_save(discoplan_picture* picture, const char* path);

/* Colours of a map by that name, from the lowest value's to the highest's: four bytes each. */
DISCOPLAN_API discoplan_status discoplan_colours(const char* name, int64_t count, uint8_t* rgba);
/* "viridis, cividis, ..." It stays. */
DISCOPLAN_API discoplan_status discoplan_colour_names(const char** names);

/* ---- Many wafers at once ---- */

/* The sites of many wafers behind each other, and where each wafer begins. Wafer i has the sites
 * from offsets[i] to below offsets[i + 1]; offsets needn't begin at 0. */
typedef struct discoplan_batch {
  uint32_t size;
  int32_t format; /* of the pictures: DISCOPLAN_PNG, DISCOPLAN_SVG, DISCOPLAN_PDF */
  int64_t wafers;
  const int32_t* offsets32; /* wafers + 1 of them, in one of the two */
  const int64_t* offsets64;
  int64_t count; /* of the sites that the arrays hold */
  discoplan_array x;
  discoplan_array y;
  discoplan_array value;
  const char* names;             /* titles behind each other, and where each begins; may be NULL */
  const int32_t* name_offsets32; /* wafers + 1 of them, in one of the two */
  const int64_t* name_offsets64;
  const discoplan_wafer_options* wafer; /* of all; may be NULL */
  const discoplan_plot_options* plot;   /* of all; NULL: no pictures */
  uint64_t figures;                     /* bit i asks for figure i; 0: all */
} discoplan_batch;

/* Statistics and pictures of each wafer. A wafer that can't be taken or drawn has its status and
 * text in its place, and never fails the batch: only bad arguments do. */
DISCOPLAN_API discoplan_status discoplan_batch_run(const discoplan_batch* batch,
                                                   discoplan_result** result);

/* What came of it, by wafers. Offsets have one more number than there are wafers. */
typedef struct discoplan_result_view {
  uint32_t size; /* set by the caller */
  uint32_t reserved;
  int64_t wafers;
  int64_t figures;
  const int32_t* statuses;
  const double* statistics; /* figure after figure, `wafers` numbers each; not a number for none */
  const uint8_t* pictures;  /* the files behind each other; empty for none */
  const int64_t* picture_offsets;
  const char* messages; /* behind each other, without ends */
  const int64_t* message_offsets;
} discoplan_result_view;

DISCOPLAN_API discoplan_status discoplan_result_get(discoplan_result* result,
                                                    discoplan_result_view* view);

/* ---- The nine controls ---- */

enum {
  DISCOPLAN_EMPTY = 0,
  DISCOPLAN_INT16 = 1,
  DISCOPLAN_INT32 = 2,
  DISCOPLAN_FLOAT = 3,
  DISCOPLAN_DOUBLE = 4,
  DISCOPLAN_BOOLEAN = 5,
  DISCOPLAN_COLOUR = 6, /* 0x00BBGGRR */
  DISCOPLAN_TEXT = 7,
  DISCOPLAN_NUMBERS = 8 /* an array of 32-bit floats */
};

/* What a member takes or gives. A number of any type will do where a member takes a number that has
 * its value; booleans are 0 and -1. */
typedef struct discoplan_value {
  int32_t type;
  int32_t lower; /* bound of `numbers`; hosts use 0 or 1 */
  double number;
  const char* text;
  const float* numbers;
  int64_t count; /* of `numbers` */
} discoplan_value;

/* All classes with their members, events and enumerations, as JSON. It stays. */
DISCOPLAN_API discoplan_status discoplan_describe(const char** json);

/* A control of that class, such as "Plot2D", with the properties of a new one, that size in pixels
 * and no window. */
DISCOPLAN_API discoplan_status discoplan_control_new(const char* class_name, int32_t width,
                                                     int32_t height, discoplan_control** control);
DISCOPLAN_API discoplan_status discoplan_control_resize(discoplan_control* control, int32_t width,
                                                        int32_t height);
/* Members by their names. What comes out stays until the thread's next call of these. */
DISCOPLAN_API discoplan_status discoplan_control_get(discoplan_control* control, const char* name,
                                                     discoplan_value* value);
DISCOPLAN_API discoplan_status discoplan_control_set(discoplan_control* control, const char* name,
                                                     const discoplan_value* value);
/* Arguments that the method changes are changed in place. The result may be NULL. */
DISCOPLAN_API discoplan_status discoplan_control_call(discoplan_control* control, const char* name,
                                                      discoplan_value* arguments, int64_t count,
                                                      discoplan_value* result);

/* Called by the thread that acts on the control, within its call; it may call the control in turn,
 * and free it. */
typedef void (*discoplan_event_handler)(void* context, const char* event,
                                        const discoplan_value* arguments, int64_t count);
/* Who hears all events of the control; NULL for nobody. */
DISCOPLAN_API discoplan_status discoplan_control_listen(discoplan_control* control,
                                                        discoplan_event_handler handler,
                                                        void* context);
/* The user acts with the mouse on the child of that name, such as "Frame1"; on the control itself
 * for NULL. `event` is Click, DblClick, MouseDown, MouseMove or MouseUp; positions count from the
 * child's upper left corner in its own units. */
DISCOPLAN_API discoplan_status discoplan_control_mouse(discoplan_control* control,
                                                       const char* child, const char* event,
                                                       int32_t button, int32_t shift, float x,
                                                       float y);
/* The control as its user sees it, in pixels: PNG alone. */
DISCOPLAN_API discoplan_status discoplan_control_picture(discoplan_control* control,
                                                         discoplan_picture** picture);
/* A page as the control prints it, for SVG and PDF files: the plot in its frame, the wafer's mark
 * and the legend, unless it is hidden. 20 to 2000 mm wide and high; as large as the control for two
 * zeros. DISCOPLAN_BAD_DATA for a control without data. */
DISCOPLAN_API discoplan_status discoplan_control_print(discoplan_control* control, double width_mm,
                                                       double height_mm,
                                                       discoplan_picture** picture);

#ifdef __cplusplus
}
#endif

#endif
