// SPDX-License-Identifier: MIT
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

GUID EventsOf(const ComPtr<IDispatch>& plot) {
  GUID id{};
  EXPECT_EQ(S_OK, As<IProvideClassInfo2>(plot)->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &id));
  return id;
}

TEST(Properties, AreAskedForAndAnnounced) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Get(*plot.Get(), L"WaferDiameter");  // a new one is made by now
  PropertySink sink;
  const DWORD cookie = Connect(*plot.Get(), sink, IID_IPropertyNotifySink);
  Put(*plot.Get(), L"TestDiameter", 150);
  EXPECT_EQ((std::vector<DISPID>{18}), sink.asked);
  EXPECT_EQ((std::vector<DISPID>{18}), sink.changed);
  sink.allows = false;
  EXPECT_EQ(387, Invoke(*plot.Get(), L"TestDiameter", DISPATCH_PROPERTYPUT, {Of(100.0)}).error);
  EXPECT_EQ(150, Get(*plot.Get(), L"TestDiameter"));
  EXPECT_EQ(1U, sink.changed.size());
  Disconnect(*plot.Get(), cookie, IID_IPropertyNotifySink);
  Put(*plot.Get(), L"TestDiameter", 100);
  EXPECT_EQ(1U, sink.changed.size());
  EXPECT_EQ(0U, sink.references);
}

TEST(Events, ComeToAllWhoListen) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {10, 20, 410, 320});
  const GUID events = EventsOf(plot);
  EventSink first, second;
  const DWORD cookie = Connect(*plot.Get(), first, events);
  Connect(*plot.Get(), second, IID_IDispatch);
  const HWND window = form.PlotWindow();
  ASSERT_NE(nullptr, window);
  // Below the frame of the plot, on the control itself: twips of the control, 15 to a pixel.
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 299));
  SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(3, 299));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(3, 299));
  const auto down = first.events;
  ASSERT_EQ(4U, down.size());
  EXPECT_EQ(-605, down[0].id);
  ASSERT_EQ(4U, down[0].args.size());
  EXPECT_EQ(1, down[0].args[0]);
  EXPECT_EQ(0, down[0].args[1]);
  EXPECT_EQ(-606, down[1].id);
  EXPECT_EQ(-607, down[2].id);
  EXPECT_EQ((EventSink::Event{-600, {}}), down[3]);
  EXPECT_EQ(15, down[1].args[2] - down[0].args[2]);
  EXPECT_EQ(down, second.events);

  Disconnect(*plot.Get(), cookie, events);
  SendMessageW(window, WM_RBUTTONDBLCLK, MK_RBUTTON, MAKELPARAM(2, 299));
  SendMessageW(window, WM_RBUTTONUP, 0, MAKELPARAM(2, 299));
  EXPECT_EQ(down, first.events);
  ASSERT_EQ(6U, second.events.size());
  EXPECT_EQ((EventSink::Event{-601, {}}), second.events[4]);
  EXPECT_EQ(-607, second.events[5].id);
  EXPECT_EQ(2, second.events[5].args[0]);
}

TEST(Events, AreLostWhileFrozen) {
  const ComPtr<IDispatch> plot = NewPlot(L"Histo");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  EventSink sink;
  Connect(*plot.Get(), sink, EventsOf(plot));
  As<IOleControl>(plot)->FreezeEvents(TRUE);
  SendMessageW(form.PlotWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
  EXPECT_TRUE(sink.events.empty());
  As<IOleControl>(plot)->FreezeEvents(FALSE);
  SendMessageW(form.PlotWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
  EXPECT_EQ(1U, sink.events.size());
}

TEST(Events, AreConnectedByAQuickActivation) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  EventSink events;
  PropertySink properties;
  QACONTAINER container{};
  container.cbSize = sizeof container;
  container.pClientSite = &form;
  container.pUnkEventSink = &events;
  container.pPropertyNotifySink = &properties;
  QACONTROL control{};
  control.cbSize = sizeof control;
  ASSERT_EQ(S_OK, As<IQuickActivate>(plot)->QuickActivate(&container, &control));
  EXPECT_NE(0U, control.dwMiscStatus & OLEMISC_INSIDEOUT);
  EXPECT_NE(0U, control.dwEventCookie);
  EXPECT_NE(0U, control.dwPropNotifyCookie);
  EXPECT_EQ(1U, events.references);
  ComPtr<IOleClientSite> site;
  EXPECT_EQ(S_OK, As<IOleObject>(plot)->GetClientSite(&site));
  EXPECT_EQ(static_cast<IOleClientSite*>(&form), site.Get());
  site = nullptr;
  Put(*plot.Get(), L"PlotCaption", 7);
  EXPECT_EQ(37, properties.changed.back());
  Disconnect(*plot.Get(), control.dwEventCookie, EventsOf(plot));
  Disconnect(*plot.Get(), control.dwPropNotifyCookie, IID_IPropertyNotifySink);
  EXPECT_EQ(S_OK, As<IOleObject>(plot)->SetClientSite(nullptr));
  EXPECT_EQ(0U, events.references);
  control.cbSize = 4;
  EXPECT_EQ(E_INVALIDARG, As<IQuickActivate>(plot)->QuickActivate(&container, &control));
}

TEST(Events, NeedNotBeConnectedByAQuickActivation) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  QACONTAINER container{};
  container.cbSize = sizeof container + 16;  // of a newer system
  QACONTROL control{};
  control.cbSize = sizeof control;
  control.dwEventCookie = control.dwPropNotifyCookie = 7;
  ASSERT_EQ(S_OK, As<IQuickActivate>(plot)->QuickActivate(&container, &control));
  EXPECT_EQ(0U, control.dwEventCookie);
  EXPECT_EQ(0U, control.dwPropNotifyCookie);
  EXPECT_NE(0U, control.dwMiscStatus & OLEMISC_ACTIVATEWHENVISIBLE);
  EXPECT_EQ(static_cast<DWORD>(VIEWSTATUS_OPAQUE), control.dwViewStatus);
  Load(*plot.Get());
  EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
  PropertySink properties;
  container.pPropertyNotifySink = &properties;
  ASSERT_EQ(S_OK, As<IQuickActivate>(plot)->QuickActivate(&container, &control));
  EXPECT_EQ(0U, control.dwEventCookie);
  Put(*plot.Get(), L"TestDiameter", 90);
  EXPECT_EQ((std::vector<DISPID>{18}), properties.changed);
  Disconnect(*plot.Get(), control.dwPropNotifyCookie, IID_IPropertyNotifySink);
  EXPECT_EQ(0U, properties.references);
}

TEST(Events, ListTheirListeners) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const auto points = As<IConnectionPointContainer>(plot);
  ComPtr<IEnumConnectionPoints> list;
  ASSERT_EQ(S_OK, points->EnumConnectionPoints(&list));
  IConnectionPoint* found[3] = {};
  ULONG count = 0;
  EXPECT_EQ(S_FALSE, list->Next(3, found, &count));
  ASSERT_EQ(2U, count);
  IID id{};
  EXPECT_EQ(S_OK, found[1]->GetConnectionInterface(&id));
  EXPECT_TRUE(id == IID_IPropertyNotifySink);
  PropertySink sink;
  DWORD cookie = 0;
  EXPECT_EQ(S_OK, found[1]->Advise(&sink, &cookie));
  EventSink wrong;
  EXPECT_EQ(CONNECT_E_CANNOTCONNECT, found[1]->Advise(&wrong, &cookie));
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(S_OK, found[1]->EnumConnections(&connections));
  CONNECTDATA data[2] = {};
  EXPECT_EQ(S_FALSE, connections->Next(2, data, &count));
  ASSERT_EQ(1U, count);
  EXPECT_EQ(static_cast<IUnknown*>(&sink), data[0].pUnk);
  data[0].pUnk->Release();
  EXPECT_EQ(CONNECT_E_NOCONNECTION, found[1]->Unadvise(77));
  for (IConnectionPoint* point : found) {
    if (point != nullptr) point->Release();
  }
}

}  // namespace
}  // namespace discoplan::activex
