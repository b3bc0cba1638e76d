// The control on a form of Windows Forms, by late binding:
//   csc /target:winexe /platform:x64 Station.cs
using System;
using System.Windows.Forms;

class WaferMap : AxHost {
  WaferMap(string id) : base(id) { }
  public static WaferMap Create() {
    return new WaferMap(Type.GetTypeFromProgID("Discoplan.Plot2D", true).GUID.ToString("B"));
  }
  public dynamic Plot { get { return GetOcx(); } }
}

static class Station {
  [STAThread]
  static void Main() {
    var form = new Form { Text = "Station", Width = 640, Height = 520 };
    var map = WaferMap.Create();
    map.Dock = DockStyle.Fill;
    form.Controls.Add(map);
    form.Load += delegate {
      float[] x = { -60, 0, 60, -60, 0, 60, -60, 0, 60 };
      float[] y = { -60, -60, -60, 0, 0, 0, 60, 60, 60 };
      float[] z = { 1000, 1005, 1010, 1015, 1020, 1025, 1030, 1035, 1040 };
      map.Plot.WaferDiameter = 200;
      if (map.Plot.SetWaferData(ref x, ref y, ref z) == 0) map.Plot.Plot();
    };
    Application.Run(form);
  }
}
