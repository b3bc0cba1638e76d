"""A wafer's numbers by comtypes: pip install comtypes"""
from array import array

import comtypes.client

plot = comtypes.client.CreateObject("Discoplan.Plot2D", dynamic=True)
plot.WaferDiameter = 200
x = array("f", [-60, 0, 60] * 3)
y = array("f", [-60] * 3 + [0] * 3 + [60] * 3)
z = array("f", [1000 + 5 * i for i in range(9)])
assert plot.SetWaferData(x, y, z) == 0
plot.Plot()
print("mean", plot.mean, "sigma", plot.StdDev)
