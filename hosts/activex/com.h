// SPDX-License-Identifier: MIT
#pragma once

/// What all parts of the server share of Windows' own COM.

#include <windows.h>
//
#include <commctrl.h>
#include <dispex.h>
#include <objsafe.h>
#include <ocidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <string>
#include <string_view>

#include "discoplan/controls/control_class.h"

namespace discoplan::activex {

using Microsoft::WRL::ComPtr;

std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);

/// A copy for the caller to free; nothing without the memory.
LPOLESTR TaskText(const std::wstring& text);

/// "6A2C02D3-..." as an id.
GUID ToGuid(std::string_view text);
/// In braces, as the registry has it.
std::wstring InBraces(std::string_view id);

/// This library's own file.
HINSTANCE Module();
void Module(HINSTANCE module);
std::wstring ModuleFile();

/// Of the library's own types; nothing for an id that it doesn't have.
ComPtr<ITypeInfo> TypeInfoOf(const GUID& id);

/// Objects and locks that keep the library loaded.
void LockModule();
void UnlockModule();
bool ModuleIsFree();

/// A picture's rows from top to bottom, 32 bits a pixel.
BITMAPINFO RowsOf(int width, int height);

/// A VARIANT that frees what it holds.
struct OwnedVariant : VARIANT {
  OwnedVariant() { VariantInit(this); }
  ~OwnedVariant() { VariantClear(this); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
};

/// The name in any case of its letters.
bool SameName(std::string_view name, std::wstring_view wide);

}  // namespace discoplan::activex
