' Plots a wafer without a form, and prints its statistics' numbers: cscript map.vbs
Option Explicit
Dim map, x(8), y(8), z(8), i
Set map = CreateObject("Discoplan.Plot2D")
map.WaferDiameter = 200
map.TestDiameter = 194
For i = 0 To 8
  x(i) = (i Mod 3 - 1) * 60
  y(i) = (i \ 3 - 1) * 60
  z(i) = 1000 + 5 * i
Next
If map.SetWaferData(x, y, z) <> 0 Then
  WScript.Echo "The sites weren't taken."
  WScript.Quit 1
End If
map.Plot
WScript.Echo "mean " & map.mean & ", sigma " & map.StdDev & ", at the centre " & map.Interpolation(0, 0)
