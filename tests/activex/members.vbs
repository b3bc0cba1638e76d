' Late binding by a script: every readable member before and after a load, arrays both ways, errors,
' and a printer that is an object of the script's. Writes NAME=VALUE a line. `compare script` puts
' in front of it what the controls' members are.
Dim plot_name, plot, x(12), y(12), z(12), i, gx, gy, gz

Sub Say(name, value)
  WScript.Echo name & "=" & value
End Sub

Class Lettering
  Public Name
  Public Size
  Public Bold
  Public Underline
End Class

Class Paper
  Public Font
  Public FontTransparent
  Public ScaleMode
  Public DrawWidth
  Public DrawStyle
  Public FillStyle
  Public FillColor
  Public ForeColor
  Public BackColor
  Public CurrentX
  Public CurrentY
  Public TwipsPerPixelX
  Public TwipsPerPixelY
  Public hdc
  Public Lines
  Public Circles
  Public Texts
  Public Polygons
  Public Fills
  Private Sub Class_Initialize()
    Set Font = New Lettering
    TwipsPerPixelX = 2.4 : TwipsPerPixelY = 2.4 : hdc = 0
  End Sub
  Public Function TextWidth(text)
    TextWidth = 100 * Len(text)
  End Function
  Public Function TextHeight(text)
    TextHeight = 195
  End Function
  Public Sub Line(x1, y1, x2, y2, colour, shape)
    Lines = Lines + 1
  End Sub
  Public Sub Circle(x, y, radius, colour, first, last, aspect)
    Circles = Circles + 1
  End Sub
  Public Sub Print(text)
    Texts = Texts & text & "|"
  End Sub
  Public Sub Polygon(points)
    Polygons = Polygons + 1
  End Sub
  Public Sub FloodFill(x, y, colour)
    Fills = Fills + 1
  End Sub
End Class

Class Broken
End Class

For Each plot_name In classes
  Set plot = CreateObject("Discoplan." & plot_name)
  ReadMembers "new"
  For i = 0 To 12
    x(i) = (i Mod 5) * 35 - 70 : y(i) = (i \ 5) * 60 - 60 : z(i) = 10 + i * 0.75
  Next
  Say "load." & plot_name, plot.setwaferdata(x, y, z)
  Say "plot." & plot_name, plot.PLOT()
  ReadMembers "loaded"
  Say "sites." & plot_name, plot.GetWaferData(gx, gy, gz)
  Say "bounds." & plot_name, LBound(gx) & ".." & UBound(gx)
  Say "last." & plot_name, gx(13) & ";" & gy(13) & ";" & gz(13)
  Set plot.PrinterObj = New Paper
  Say "print." & plot_name, plot.PrintPlot(1440, 1440, 7200, 5400)
  Say "drawn." & plot_name, CStr(plot.PrinterObj.Lines + plot.PrinterObj.Circles + plot.PrinterObj.Polygons > 0)
  Say "caption." & plot_name, plot.PrinterObj.Font.Name
  On Error Resume Next
  Set plot.PrinterObj = New Broken
  plot.PrintWaferSize 0, 0
  Say "broken." & plot_name, Err.Number
  Err.Clear
  plot.BackColor = "no number"
  Say "mismatch." & plot_name, Err.Number
  Err.Clear
  plot.NoSuchMember
  Say "unknown." & plot_name, Err.Number
  On Error Goto 0
  Set plot.PrinterObj = Nothing
  Say "nothing." & plot_name, plot.PrintWaferSize(0, 0)
  Set plot = Nothing
Next
