#include "com/enum_variant.hpp"

#include "com/bridge.hpp"
#include "com/errors.hpp"
#include "com/unknown.hpp"

namespace celdo::com {

namespace {

class EnumVariant final : public SingleInterface<IEnumVARIANT> {
public:
    explicit EnumVariant(automation::Ref<automation::Enumerator> items)
        : SingleInterface(IID_IEnumVARIANT), items_(std::move(items)) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override {
        if (!items || (count > 1 && !fetched)) return E_POINTER;
        ULONG got = 0;
        const HRESULT hr = guarded(IID_IEnumVARIANT, [&] {
            automation::Variant item;
            while (got < count && items_->next(item)) {
                to_variant(item, &items[got]);
                ++got;
            }
        });
        if (FAILED(hr)) {
            // Nothing is handed out from a failed call.
            for (ULONG i = 0; i < got; ++i) VariantClear(&items[i]);
            got = 0;
        }
        if (fetched) *fetched = got;
        if (FAILED(hr)) return hr;
        return got == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        bool all = true;
        const HRESULT hr = guarded(IID_IEnumVARIANT, [&] {
            automation::Variant item;
            for (ULONG i = 0; i < count && all; ++i) all = items_->next(item);
        });
        return FAILED(hr) ? hr : all ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        items_->reset();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        return guarded(IID_IEnumVARIANT, [&] {
            *out = com_ptr<IEnumVARIANT>::copy(new EnumVariant(items_->clone())).detach();
        });
    }

private:
    automation::Ref<automation::Enumerator> items_;
};

class HostEnumerator final : public automation::Enumerator {
public:
    explicit HostEnumerator(com_ptr<IEnumVARIANT> items) : items_(std::move(items)) {}

    bool next(automation::Variant& item) override {
        unique_variant got;
        ULONG fetched = 0;
        const HRESULT hr = items_->Next(1, got.get(), &fetched);
        if (FAILED(hr)) throw error_from_call(hr, nullptr, nullptr);
        if (hr != S_OK || fetched != 1) return false;
        item = from_variant(got.get());
        return true;
    }
    void reset() override { items_->Reset(); }
    automation::Ref<automation::Enumerator> clone() const override {
        com_ptr<IEnumVARIANT> copy;
        const HRESULT hr = items_->Clone(copy.put());
        if (FAILED(hr) || !copy) throw error_from_call(FAILED(hr) ? hr : E_POINTER, nullptr, nullptr);
        return automation::make_ref<HostEnumerator>(std::move(copy));
    }

private:
    com_ptr<IEnumVARIANT> items_;
};

}  // namespace

automation::Ref<automation::Enumerator> host_enumerator(com_ptr<IEnumVARIANT> items) {
    return automation::make_ref<HostEnumerator>(std::move(items));
}

com_ptr<IUnknown> make_enum_variant(automation::Ref<automation::Enumerator> items) {
    return com_ptr<IUnknown>::copy(new EnumVariant(std::move(items)));
}

}  // namespace celdo::com
