// SPDX-License-Identifier: MIT
#pragma once

/// What the control asks of its container, which may offer any of it or nothing.

#include "hosts/activex/com.h"

namespace discoplan::activex {

class Site {
 public:
  IOleClientSite* client() const { return client_.Get(); }
  void client(IOleClientSite* client) { client_ = client; }
  template <class Interface>
  ComPtr<Interface> As() const {
    ComPtr<Interface> offered;
    if (client_) client_->QueryInterface(IID_PPV_ARGS(&offered));
    return offered;
  }

  /// False where the container designs a form; it then has the mouse and the keys.
  bool UserMode() const;
  /// Has the form around the control count in twips, where it has a scale.
  void UseTwips() const;
  /// The container's window.
  HWND Window() const;

 private:
  ComPtr<IOleClientSite> client_;
};

}  // namespace discoplan::activex
