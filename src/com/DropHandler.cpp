#include <tarn/ShellExtension.h>

#include <algorithm>

namespace tarn {
namespace {
// A caller may look at the effect after a failure, too: nothing has happened then.
template <class Call> HRESULT withEffect(DWORD* effect, Call call)
{
    if (!effect)
        return E_POINTER;
    const HRESULT hr = asHRESULT(call);
    if (FAILED(hr))
        *effect = DROPEFFECT_NONE;
    return hr;
}
} // namespace

HRESULT DropHandler::GetClassID(CLSID* clsid)
{
    if (!clsid)
        return E_POINTER;
    *clsid = clsid_;
    return S_OK;
}

HRESULT DropHandler::Load(LPCOLESTR file, DWORD)
{
    return asHRESULT([&] { target_ = BasicString<wchar_t>(file); });
}

HRESULT DropHandler::Save(LPCOLESTR, BOOL) { return E_NOTIMPL; }
HRESULT DropHandler::SaveCompleted(LPCOLESTR) { return S_OK; }

HRESULT DropHandler::GetCurFile(LPOLESTR* file)
{
    if (!file)
        return E_POINTER;
    const std::size_t size = target_.size() + 1;
    *file = static_cast<LPOLESTR>(CoTaskMemAlloc(size * sizeof(wchar_t)));
    if (!*file)
        return E_OUTOFMEMORY;
    std::copy_n(target_.c_str(), size, *file);
    return S_OK;
}

unsigned long DropHandler::getEffect(const Items&, unsigned long, unsigned long) const { return DROPEFFECT_COPY; }

unsigned long DropHandler::chooseEffect(unsigned long keys, unsigned long allowed) const
{
    return dragged_.empty() ? DROPEFFECT_NONE : getEffect(dragged_, keys, allowed) & allowed;
}

HRESULT DropHandler::DragEnter(IDataObject* data, DWORD keys, POINTL, DWORD* effect)
{
    return withEffect(effect, [&] {
        dragged_ = ShellExtension::readItems(data);
        *effect = chooseEffect(keys, *effect);
    });
}

HRESULT DropHandler::DragOver(DWORD keys, POINTL, DWORD* effect)
{
    return withEffect(effect, [&] { *effect = chooseEffect(keys, *effect); });
}

HRESULT DropHandler::DragLeave()
{
    dragged_.clear();
    return S_OK;
}

HRESULT DropHandler::Drop(IDataObject* data, DWORD keys, POINTL, DWORD* effect)
{
    return withEffect(effect, [&] {
        dragged_ = ShellExtension::readItems(data);
        *effect = chooseEffect(keys, *effect);
        const Items items = std::exchange(dragged_, {});
        if (*effect != DROPEFFECT_NONE)
            drop(items, *effect);
    });
}

void* DropHandler::queryInterface(const GUID& iid)
{
    if (iid == IID_IPersistFile)
        return static_cast<IPersistFile*>(this);
    if (iid == IID_IPersist)
        return static_cast<IPersist*>(static_cast<IPersistFile*>(this));
    if (iid == IID_IDropTarget)
        return static_cast<IDropTarget*>(this);
    return IUnknownImpl::queryInterface(iid);
}
} // namespace tarn
