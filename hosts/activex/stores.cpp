// SPDX-License-Identifier: MIT
#include "hosts/activex/stores.h"

#include <array>
#include <cstring>

#include "discoplan/base/numbers.h"
#include "hosts/activex/caller_object.h"
#include "hosts/activex/control_object.h"

namespace discoplan::activex {
namespace {

/// A value as a bag keeps it: whole numbers of the kind that the key has, others of their own type.
void ToStored(const Variant& value, StoredKind kind, VARIANT& result, const Objects& objects) {
  const auto type_of = [&]() -> Type {
    if (kind == StoredKind::Boolean) return Type::Boolean;
    if (kind == StoredKind::Object) return Type::Object;
    if (kind == StoredKind::Int32) return Type::Int32;
    constexpr std::array kTypes = {Type::None,  Type::Int16,  Type::Int32, Type::Rgb,
                                   Type::Float, Type::Double, Type::String};
    return kTypes[value.value().index()];
  };
  ToCaller(value, type_of(), result, objects);
}

Type TypeOf(StoredKind kind) {
  constexpr std::array kTypes = {Type::Int16,   Type::Int32,  Type::Double,
                                 Type::Boolean, Type::String, Type::Object};
  return kTypes[static_cast<std::size_t>(kind)];
}

constexpr std::uint32_t kMark = 0x4E4C5044;  // "DPLN"
constexpr std::uint32_t kForm = 1;
constexpr const wchar_t* kContents = L"Contents";
constexpr std::uint32_t kLongest = 1U << 20;

/// Raises its failures; `Save` and `Load` give them back.
class Stream {
 public:
  explicit Stream(IStream& stream) : stream_(stream) {}

  void Write(const void* data, std::size_t size) {
    ULONG written = 0;
    Check(stream_.Write(data, static_cast<ULONG>(size), &written));
    if (written != size) throw STG_E_MEDIUMFULL;
  }
  void Read(void* data, std::size_t size) {
    ULONG read = 0;
    Check(stream_.Read(data, static_cast<ULONG>(size), &read));
    if (read != size) throw STG_E_READFAULT;
  }
  template <class T>
  void Write(T number) {
    Write(&number, sizeof number);
  }
  template <class T>
  T Read() {
    T number;
    Read(&number, sizeof number);
    return number;
  }
  void WriteText(std::string_view text) {
    Write(static_cast<std::uint32_t>(text.size()));
    Write(text.data(), text.size());
  }
  std::string ReadText() {
    const auto size = Read<std::uint32_t>();
    if (size > kLongest) throw STG_E_DOCFILECORRUPT;
    std::string text(size, '\0');
    Read(text.data(), size);
    return text;
  }
  /// An object that can't be kept is left out, as nothing.
  void WriteObject(IDispatch* object) {
    ComPtr<IPersistStream> kept;
    const bool can = object != nullptr && SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(&kept)));
    Write(static_cast<std::uint32_t>(can));
    if (can) Check(OleSaveToStream(kept.Get(), &stream_));
  }
  ComPtr<IDispatch> ReadObject() {
    ComPtr<IDispatch> object;
    if (Read<std::uint32_t>() != 0) {
      Check(OleLoadFromStream(&stream_, IID_PPV_ARGS(&object)));
    }
    return object;
  }

 private:
  static void Check(HRESULT result) {
    if (FAILED(result)) throw result;
  }

  IStream& stream_;
};

void WriteValue(Stream& stream, const MemoryBag::Entry& entry, const Objects& objects) {
  stream.WriteText(entry.key);
  stream.Write(static_cast<std::uint32_t>(entry.kind));
  if (entry.kind == StoredKind::Object) {
    return stream.WriteObject(objects.given(entry.value.AsObject()).Get());
  }
  if (entry.kind == StoredKind::String) return stream.WriteText(entry.value.AsString());
  stream.Write(entry.value.AsDouble());
}

void ReadValue(Stream& stream, MemoryBag& bag, const Objects& objects) {
  const std::string key = stream.ReadText();
  const auto number = stream.Read<std::uint32_t>();
  if (number > static_cast<std::uint32_t>(StoredKind::Object)) throw STG_E_DOCFILECORRUPT;
  const auto kind = static_cast<StoredKind>(number);
  Variant value;
  if (kind == StoredKind::Object) {
    value = Variant(objects.taken(stream.ReadObject().Get()));
  } else if (kind == StoredKind::String) {
    value = Variant(stream.ReadText());
  } else {
    value = Variant(stream.Read<double>());
  }
  bag.WriteProperty(key, kind, value, {});
}

/// The container's bag, asked for what the class's rows tell.
MemoryBag Taken(IPropertyBag& bag, IErrorLog* log, const ControlClass& row,
                const Objects& objects) {
  MemoryBag taken;
  for (const StoredProperty& setting : row.SettingsRead()) {
    OwnedVariant value;
    if (FAILED(bag.Read(Wide(setting.key).c_str(), &value, log))) continue;
    if (value.vt == VT_EMPTY || value.vt == VT_NULL) continue;
    taken.WriteProperty(setting.key, setting.kind,
                        FromCaller(value, TypeOf(setting.kind), LOCALE_INVARIANT, objects),
                        setting.default_value);
  }
  return taken;
}

template <class Act>
HRESULT Guarded(Act&& act) try {
  act();
  return S_OK;
} catch (HRESULT failed) {
  return failed;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
} catch (const RunTimeError& error) {
  return static_cast<HRESULT>(0x800A0000) + static_cast<int>(error.fault());
}

}  // namespace

Stores::Stores(ControlObject& object) : Part(object.whole()), object_(object) {}

STDMETHODIMP Stores::GetClassID(CLSID* id) {
  if (id == nullptr) return E_POINTER;
  *id = ToGuid(object_.row().class_id);
  return S_OK;
}

STDMETHODIMP Stores::InitNew() {
  return Guarded([this] { object_.Renew(); });
}

/// A store that fails half-way leaves the settings as they were.
STDMETHODIMP Stores::Load(IStream* stream) {
  if (stream == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = object_.Keep();
  return Guarded([&] {
    Stream in(*stream);
    if (in.Read<std::uint32_t>() != kMark) throw STG_E_DOCFILECORRUPT;
    if (in.Read<std::uint32_t>() != kForm) throw STG_E_OLDDLL;
    const auto width = in.Read<float>();
    const auto height = in.Read<float>();
    if (!(width >= 0 && width < 1e6F && height >= 0 && height < 1e6F)) throw STG_E_DOCFILECORRUPT;
    MemoryBag bag;
    for (auto left = in.Read<std::uint32_t>(); left > 0; --left)
      ReadValue(in, bag, object_.objects());
    object_.Unset().root().Move({0, 0, width, height});
    object_.Restore(bag);
  });
}

STDMETHODIMP Stores::Save(IStream* stream, BOOL clear_dirty) {
  if (stream == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = object_.Keep();
  return Guarded([&] {
    MemoryBag bag;
    object_.Control().WriteProperties(bag);
    Stream out(*stream);
    out.Write(kMark);
    out.Write(kForm);
    out.Write(object_.Unset().root().Box().width);
    out.Write(object_.Unset().root().Box().height);
    out.Write(static_cast<std::uint32_t>(bag.entries().size()));
    for (const MemoryBag::Entry& entry : bag.entries()) WriteValue(out, entry, object_.objects());
    if (clear_dirty) is_dirty_ = false;
  });
}

STDMETHODIMP Stores::Load(IPropertyBag* bag, IErrorLog* log) {
  if (bag == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = object_.Keep();
  return Guarded([&] { object_.Restore(Taken(*bag, log, object_.row(), object_.objects())); });
}

STDMETHODIMP Stores::Save(IPropertyBag* bag, BOOL clear_dirty, BOOL) {
  if (bag == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = object_.Keep();
  return Guarded([&] {
    MemoryBag settings;
    object_.Control().WriteProperties(settings);
    for (const MemoryBag::Entry& entry : settings.entries()) {
      OwnedVariant value;
      ToStored(entry.value, entry.kind, value, object_.objects());
      const HRESULT written = bag->Write(Wide(entry.key).c_str(), &value);
      if (FAILED(written)) throw written;
    }
    if (clear_dirty) is_dirty_ = false;
  });
}

STDMETHODIMP Stores::InitNew(IStorage* storage) {
  return storage == nullptr ? E_POINTER : InitNew();
}

STDMETHODIMP Stores::Load(IStorage* storage) {
  if (storage == nullptr) return E_POINTER;
  ComPtr<IStream> stream;
  const HRESULT opened =
      storage->OpenStream(kContents, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream);
  return FAILED(opened) ? opened : Load(stream.Get());
}

STDMETHODIMP Stores::Save(IStorage* storage, BOOL) {
  if (storage == nullptr) return E_POINTER;
  if (holds_no_storage_) return E_UNEXPECTED;
  ComPtr<IStream> stream;
  const HRESULT made = storage->CreateStream(
      kContents, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream);
  return FAILED(made) ? made : Save(stream.Get(), FALSE);
}

STDMETHODIMP Stores::SaveCompleted(IStorage*) {
  const ComPtr<IUnknown> alive = object_.Keep();
  holds_no_storage_ = false;
  is_dirty_ = false;
  object_.embedding().Saved();
  return S_OK;
}

STDMETHODIMP Stores::HandsOffStorage() {
  holds_no_storage_ = true;
  return S_OK;
}

}  // namespace discoplan::activex
