// SPDX-License-Identifier: MIT
#pragma once

/// What the control tells about its class, and about its harmlessness.

#include "hosts/activex/part.h"

#ifdef __MINGW32__
// Its headers leave this one out.
__CRT_UUID_DECL(IObjectSafety, 0xCB5BDC81, 0x93C1, 0x11CF, 0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0,
                0x64)
#endif

namespace discoplan::activex {

class ControlObject;

class ClassFacts final : public Part<IProvideClassInfo2, IObjectSafety> {
 public:
  explicit ClassFacts(ControlObject& object);

  // IProvideClassInfo2
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* id) override;

  // IObjectSafety: settings from anywhere do no harm; a script might read files, so it is no safe
  // caller.
  STDMETHODIMP GetInterfaceSafetyOptions(REFIID id, DWORD* known, DWORD* on) override;
  STDMETHODIMP SetInterfaceSafetyOptions(REFIID id, DWORD mask, DWORD on) override;

 private:
  ControlObject& object_;
};

}  // namespace discoplan::activex
