# SPDX-License-Identifier: MIT
"""The C interface from Python without the package: map.py LIBRARY LOT.csv NUMBER MAP.png"""
import ctypes
import sys

library = ctypes.CDLL(sys.argv[1])
library.discoplan_error.restype = ctypes.c_char_p


def check(status: int) -> None:
    if status:
        sys.exit(library.discoplan_error().decode())


lot, wafer, picture = ctypes.c_void_p(), ctypes.c_void_p(), ctypes.c_void_p()
check(library.discoplan_read(sys.argv[2].encode(), None, ctypes.byref(lot)))
check(library.discoplan_lot_wafer(lot, ctypes.c_int64(int(sys.argv[3])), ctypes.byref(wafer)))
check(library.discoplan_plot(wafer, None, ctypes.byref(picture)))
check(library.discoplan_picture_save(picture, sys.argv[4].encode()))

count = ctypes.c_int64()
check(library.discoplan_figure_count(ctypes.byref(count)))
values = (ctypes.c_double * count.value)()
check(library.discoplan_wafer_statistics(wafer, values, count))
print(f"mean {values[0]:.6g}")
for handle in (picture, wafer, lot):
    check(library.discoplan_free(handle))
