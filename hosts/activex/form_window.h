// SPDX-License-Identifier: MIT
#pragma once

/// A tree of nodes as a window: what the user works with (buttons, fields, boxes, options,
/// spinners) are child windows of the system's own classes, the rest is the picture behind them,
/// painted by the library. Labels and group boxes are child windows too, with their texts for
/// readers of the screen, but leave their looks and the mouse to the picture. What the user does
/// reaches the nodes; what changes in the nodes reaches the windows before the next message, or
/// with `Sync`. One view to a tree, of one thread.
///
/// Anything may happen while a node's handler runs: the owner may go, or the window may.

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "discoplan/controls/plot_control.h"
#include "discoplan/forms/node.h"
#include "discoplan/raster/text_painter.h"
#include "hosts/activex/com.h"

namespace discoplan::activex {

class FormWindow final : public std::enable_shared_from_this<FormWindow> {
 public:
  /// Outlives the window's tree, or calls `Destroy` first.
  class Owner {
   public:
    virtual const Screen& screen() const = 0;
    virtual const TextPainter& text() const = 0;
    /// Runs a handler of a node, and stays alive meanwhile.
    virtual void Act(const std::function<void()>& act) { act(); }
    /// The mouse on what isn't a child window; the position is in the node's units.
    virtual void Mouse(Node&, const MouseAction&) {}
    virtual HCURSOR Cursor() const { return LoadCursorW(nullptr, IDC_ARROW); }
    /// The user is about to work with the form.
    virtual void Touched() {}
    /// The focus has come to the form itself or to one of its child windows, and gone elsewhere.
    virtual void Entered(bool) {}
    virtual void Left() {}
    /// Whether the form may run what the user does.
    virtual bool Works() const { return true; }
    virtual void Noted() {}
    virtual void ResolutionChanged() {}
    /// Somebody else has destroyed the window.
    virtual void WindowGone() {}

   protected:
    ~Owner() = default;
  };

  FormWindow(Node& root, Owner& owner) : root_(&root), owner_(&owner) {}
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow() { Destroy(); }

  /// False where there can be no window.
  bool Create(HWND parent, const RECT& place);
  /// From here on neither the tree nor the owner is touched.
  void Destroy();

  HWND handle() const { return handle_; }
  /// Of a node that has one; of the chosen option for a group.
  HWND WindowOf(const Node* node) const;
  void Sync();
  /// Places and looks are others, as the resolution is.
  void Refresh();
  /// Moves the focus or presses a button, if that is what the key means here. False also where the
  /// focus leaves the form.
  bool Translate(MSG& message);
  /// As the user's click; false for what is no button of the form.
  bool Press(HWND button);
  /// The first or last child window that takes the focus.
  HWND End(bool last) const;

  static void Unregister();

 private:
  static constexpr UINT kSync = WM_APP + 1;
  static constexpr UINT kLeave = WM_APP + 2;   // l is the field's window
  static constexpr UINT kResolution = 0x02E3;  // WM_DPICHANGED_AFTERPARENT

  struct Widget {
    Node* node;
    std::vector<HWND> windows;  // several for a group of options
    HWND group = nullptr;       // around those
    RECT place{};
    unsigned stale = ~0U;
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
  static LRESULT CALLBACK WidgetProcedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                          DWORD_PTR self);
  static LRESULT CALLBACK QuietProcedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                         DWORD_PTR self);
  LRESULT Handle(UINT message, WPARAM w, LPARAM l);
  void Build(Node& node);
  HWND NewWidget(const wchar_t* window_class, DWORD style, int id, bool quiet);
  void Note(Node& node, Aspect aspect);
  void SyncWidget(Widget& widget);
  void SyncPlace(Widget& widget);
  void SyncText(const Widget& widget);
  const Widget* WidgetOf(HWND window, std::size_t* option = nullptr) const;
  std::vector<HWND> TabStops() const;
  HFONT FontOf(const Node& node);

  void Paint();
  void PaintOn(HDC device);
  void Lose();
  void Leave(HWND field);
  void FocusChanged(bool has, HWND window, HWND other);
  void Command(int notification, HWND from);
  LRESULT Notify(const NMHDR& header);
  void Act(const std::function<void()>& act);
  LRESULT Background(HDC device, HWND window);

  POINT CornerOf(const Node& node) const;
  Node& NodeAt(POINT point) const;
  void TellMouse(MouseEvent event, int button, Node& node, POINT point);
  void MouseDown(int button, bool twice, POINT point);
  void MouseUp(int button, POINT point);

  Node* root_;
  Owner* owner_;
  HWND handle_ = nullptr;
  std::vector<Widget> widgets_;
  std::map<std::pair<std::string, int>, HFONT> fonts_;  // by name and look
  std::map<Pixel, HBRUSH> brushes_;
  std::shared_ptr<const Canvas> picture_;
  Node* pressed_ = nullptr;
  ULONGLONG last_growth_ = 0;
  bool clicked_twice_ = false;
  bool placed_ = false;  // the widgets are where their nodes are
  bool is_due_ = false;
  bool syncing_ = false;
};

}  // namespace discoplan::activex
