' A printer that keeps what it is told: calls end with "~", their parts with a tab. Its characters are
' 6 pixels wide and 13 high, and a pixel is 2.4 twips.
Dim told

Sub Tell(name, value)
  told = told & name & vbTab & CStr(value) & vbTab & "~"
End Sub

Function Given(value)
  If VarType(value) = 10 Then Given = "null" Else Given = CStr(value)
End Function

Class Lettering
  Public Property Let Name(v) : Tell "Font.Name", v : End Property
  Public Property Let Size(v) : Tell "Font.Size", v : End Property
  Public Property Let Bold(v) : Tell "Font.Bold", v : End Property
  Public Property Let Underline(v) : Tell "Font.Underline", v : End Property
End Class

Class Paper
  Public Font
  Public TwipsPerPixelX
  Public TwipsPerPixelY
  Public hdc
  Private scale
  Private Sub Class_Initialize()
    Set Font = New Lettering
    TwipsPerPixelX = 2.4 : TwipsPerPixelY = 2.4 : hdc = 0 : scale = 1
  End Sub
  Public Property Let FontTransparent(v) : Tell "FontTransparent", v : End Property
  Public Property Let ScaleMode(v)
    scale = v
    Tell "ScaleMode", v
  End Property
  Public Property Let DrawWidth(v) : Tell "DrawWidth", v : End Property
  Public Property Let DrawStyle(v) : Tell "DrawStyle", v : End Property
  Public Property Let FillStyle(v) : Tell "FillStyle", v : End Property
  Public Property Let FillColor(v) : Tell "FillColor", v : End Property
  Public Property Let ForeColor(v) : Tell "ForeColor", v : End Property
  Public Property Let BackColor(v) : Tell "BackColor", v : End Property
  Public Property Let CurrentX(v) : Tell "CurrentX", v : End Property
  Public Property Let CurrentY(v) : Tell "CurrentY", v : End Property
  Private Function Unit()
    Unit = 1
    If scale = 1 Then Unit = 2.4
  End Function
  Public Function TextWidth(text)
    TextWidth = 6 * Len(text) * Unit()
  End Function
  Public Function TextHeight(text)
    TextHeight = 13 * Unit()
  End Function
  Public Sub Print(text)
    Tell "Print", text
  End Sub
  Public Sub Line(x1, y1, x2, y2, colour, shape)
    Tell "Line", x1 & vbTab & y1 & vbTab & x2 & vbTab & y2 & vbTab & Given(colour) & vbTab & shape
  End Sub
  Public Sub Circle(x, y, r, colour, first, last, aspect)
    Tell "Circle", x & vbTab & y & vbTab & r & vbTab & Given(colour) & vbTab & Given(first) & vbTab & Given(last) & vbTab & Given(aspect)
  End Sub
  Public Sub Polygon(points)
    Dim listed, number
    For Each number In points
      listed = listed & number & vbTab
    Next
    told = told & "Polygon" & vbTab & listed & "~"
  End Sub
  Public Sub FloodFill(x, y, colour)
    Tell "FloodFill", x & vbTab & y & vbTab & colour
  End Sub
End Class
