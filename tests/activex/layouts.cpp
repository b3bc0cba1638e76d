// SPDX-License-Identifier: MIT
// The sizes that structures of COM have by the book, for callers of 32 and of 64 bits. What doesn't
// hold stops the server from being built.

#include "hosts/activex/com.h"

namespace discoplan::activex {
namespace {

template <class Struct, std::size_t kOf32, std::size_t kOf64>
constexpr bool IsAsLarge() {
  static_assert(sizeof(Struct) == (sizeof(void*) == 8 ? kOf64 : kOf32));
  return true;
}

static_assert(IsAsLarge<VARIANT, 16, 24>());
static_assert(IsAsLarge<DISPPARAMS, 16, 24>());
static_assert(IsAsLarge<EXCEPINFO, 32, 64>());
static_assert(IsAsLarge<SAFEARRAY, 24, 32>());
static_assert(IsAsLarge<SAFEARRAYBOUND, 8, 8>());
static_assert(IsAsLarge<QACONTAINER, 64, 112>());
static_assert(IsAsLarge<QACONTROL, 24, 24>());
static_assert(IsAsLarge<CONTROLINFO, 16, 24>());
static_assert(IsAsLarge<PROPPAGEINFO, 28, 48>());
static_assert(IsAsLarge<OLEINPLACEFRAMEINFO, 20, 32>());
static_assert(IsAsLarge<OLEVERB, 16, 24>());
static_assert(IsAsLarge<FORMATETC, 20, 32>());
static_assert(IsAsLarge<STGMEDIUM, 12, 24>());
static_assert(IsAsLarge<METAFILEPICT, 16, 24>());
static_assert(IsAsLarge<CAUUID, 8, 16>());
static_assert(IsAsLarge<CADWORD, 8, 16>());
static_assert(IsAsLarge<CONNECTDATA, 8, 16>());
static_assert(IsAsLarge<BITMAPINFOHEADER, 40, 40>());
static_assert(sizeof(VARIANT_BOOL) == 2 && sizeof(OLE_COLOR) == 4 && sizeof(DISPID) == 4);
static_assert(offsetof(VARIANT, lVal) == 8 && offsetof(DISPPARAMS, cArgs) == 2 * sizeof(void*));

}  // namespace
}  // namespace discoplan::activex
