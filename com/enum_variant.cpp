#include "com/enum_variant.hpp"

#include "com/bridge.hpp"
#include "com/class_registry.hpp"

namespace celdo::com {

namespace {

class EnumVariant final : public IEnumVARIANT {
public:
    explicit EnumVariant(automation::Ref<automation::Enumerator> items) : items_(std::move(items)) {
        object_created();
    }
    ~EnumVariant() { object_destroyed(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        if (!out) return E_POINTER;
        if (riid == IID_IUnknown || riid == IID_IEnumVARIANT) {
            *out = static_cast<IEnumVARIANT*>(this);
            AddRef();
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++refs_; }
    ULONG STDMETHODCALLTYPE Release() override {
        ULONG n = --refs_;
        if (n == 0) delete this;
        return n;
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override {
        if (!items || (count > 1 && !fetched)) return E_POINTER;
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
    ULONG refs_ = 0;
    automation::Ref<automation::Enumerator> items_;
};

}  // namespace

IUnknown* make_enum_variant(automation::Ref<automation::Enumerator> items) {
    return new EnumVariant(std::move(items));
}

}  // namespace celdo::com
