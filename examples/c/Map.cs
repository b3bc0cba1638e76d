// SPDX-License-Identifier: MIT
// Draws a wafer of a measured lot from C#: Map LOT.csv NUMBER MAP.png
using System;
using System.Runtime.InteropServices;
using System.Text;

static class Discoplan {
  const string Library = "discoplan_c";

  [DllImport(Library)] static extern IntPtr discoplan_error();
  [DllImport(Library)] static extern int discoplan_free(IntPtr handle);
  [DllImport(Library)] static extern int discoplan_read(byte[] path, IntPtr options, out IntPtr lot);
  [DllImport(Library)] static extern int discoplan_lot_wafer(IntPtr lot, long number, out IntPtr wafer);
  [DllImport(Library)] static extern int discoplan_plot(IntPtr wafer, IntPtr options, out IntPtr picture);
  [DllImport(Library)] static extern int discoplan_picture_save(IntPtr picture, byte[] path);
  [DllImport(Library)] static extern int discoplan_figure_count(out long count);
  [DllImport(Library)]
  static extern int discoplan_wafer_statistics(IntPtr wafer, double[] values, long capacity);

  static byte[] Utf8(string text) { return Encoding.UTF8.GetBytes(text + "\0"); }

  static string Text(IntPtr utf8) {
    int length = 0;
    while (Marshal.ReadByte(utf8, length) != 0) ++length;
    byte[] bytes = new byte[length];
    Marshal.Copy(utf8, bytes, 0, length);
    return Encoding.UTF8.GetString(bytes);
  }

  static void Check(int status) {
    if (status != 0) throw new Exception(Text(discoplan_error()));
  }

  static int Main(string[] args) {
    IntPtr lot = IntPtr.Zero, wafer = IntPtr.Zero, picture = IntPtr.Zero;
    try {
      Check(discoplan_read(Utf8(args[0]), IntPtr.Zero, out lot));
      Check(discoplan_lot_wafer(lot, long.Parse(args[1]), out wafer));
      Check(discoplan_plot(wafer, IntPtr.Zero, out picture));
      Check(discoplan_picture_save(picture, Utf8(args[2])));
      long count;
      Check(discoplan_figure_count(out count));
      double[] values = new double[count];
      Check(discoplan_wafer_statistics(wafer, values, count));
      Console.WriteLine(string.Format(System.Globalization.CultureInfo.InvariantCulture,
                                      "mean {0:G6}", values[0]));
      return 0;
    } catch (Exception error) {
      Console.Error.WriteLine(error.Message);
      return 1;
    } finally {
      foreach (IntPtr handle in new[] {picture, wafer, lot}) discoplan_free(handle);
    }
  }
}
