// A wafer's numbers by the type library: cl /EHsc station.cpp
#import "discoplan.tlb" no_namespace named_guids
#include <cstdio>

int main() {
  CoInitialize(nullptr);
  try {
    _Plot2DPtr plot(L"Discoplan.Plot2D");
    plot->WaferDiameter = 200;
    SAFEARRAYBOUND bound = {9, 1};
    SAFEARRAY* site[3];
    for (SAFEARRAY*& list : site) list = SafeArrayCreate(VT_R4, 1, &bound);
    for (int i = 0; i < 9; ++i) {
      static_cast<float*>(site[0]->pvData)[i] = (i % 3 - 1) * 60.0f;
      static_cast<float*>(site[1]->pvData)[i] = (i / 3 - 1) * 60.0f;
      static_cast<float*>(site[2]->pvData)[i] = 1000.0f + 5 * i;
    }
    if (plot->SetWaferData(&site[0], &site[1], &site[2]) == 0) {
      plot->Plot();
      std::printf("mean %g, sigma %g\n", plot->mean, plot->StdDev);
    }
    for (SAFEARRAY* list : site) SafeArrayDestroy(list);
  } catch (const _com_error& error) {
    std::printf("%ls\n", error.ErrorMessage());
  }
  CoUninitialize();
}
