#include "com/enum_variant.hpp"

#include "com/bridge.hpp"
#include "com/host_call.hpp"
#include "com/unknown.hpp"

namespace celdo::com {

namespace {

class EnumVariant final : public SingleInterface<IEnumVARIANT> {
public:
    explicit EnumVariant(automation::Ref<automation::Enumerator> items)
        : SingleInterface(IID_IEnumVARIANT), items_(std::move(items)) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override {
        if (!items || (count > 1 && !fetched)) return E_POINTER;
        HostCall call;
        ULONG got = 0;
        try {
            automation::Variant item;
            while (got < count && items_->next(item)) {
                to_variant(item, &items[got]);
                ++got;
            }
        } catch (...) {
            for (ULONG i = 0; i < got; ++i) VariantClear(&items[i]);
            if (fetched) *fetched = 0;
            return E_FAIL;
        }
        if (fetched) *fetched = got;
        return got == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        automation::Variant item;
        for (ULONG i = 0; i < count; ++i) {
            if (!items_->next(item)) return S_FALSE;
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        items_->reset();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** out) override {
        if (!out) return E_POINTER;
        auto* copy = new EnumVariant(items_->clone());
        copy->AddRef();
        *out = copy;
        return S_OK;
    }

private:
    automation::Ref<automation::Enumerator> items_;
};

}  // namespace

IUnknown* make_enum_variant(automation::Ref<automation::Enumerator> items) {
    return new EnumVariant(std::move(items));
}

}  // namespace celdo::com
