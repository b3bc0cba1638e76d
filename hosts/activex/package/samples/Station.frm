VERSION 5.00
Object = "{08963C29-141B-4094-BD27-5759BBF5B882}#1.0#0"; "discoplan.ocx"
Begin VB.Form Station
   Caption         =   "Station"
   ClientHeight    =   5400
   ClientWidth     =   7200
   ScaleHeight     =   5400
   ScaleWidth      =   7200
   Begin Discoplan.Plot2D Map
      Height          =   4500
      Left            =   120
      Top             =   120
      Width           =   6000
   End
   Begin VB.CommandButton Measure
      Caption         =   "Measure"
      Height          =   375
      Left            =   120
      Top             =   4860
      Width           =   1335
   End
End
Attribute VB_Name = "Station"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private Sub Measure_Click()
  Dim x(1 To 9) As Single, y(1 To 9) As Single, z(1 To 9) As Single, i As Integer
  For i = 1 To 9
    x(i) = ((i - 1) Mod 3 - 1) * 60
    y(i) = ((i - 1) \ 3 - 1) * 60
    z(i) = 1000 + 5 * i
  Next
  Map.WaferDiameter = 200        ' first, as it drops all data
  If Map.SetWaferData(x, y, z) = 0 Then Map.Plot
End Sub

Private Sub Map_MouseDown(Button As Integer, Shift As Integer, x As Single, y As Single)
  Caption = "Button " & Button & " at " & x & ", " & y
End Sub
