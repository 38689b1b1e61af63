#include <tarn/ShellExtension.h>

#include <shellapi.h>

#include <memory>

namespace tarn {
ShellExtension::Items ShellExtension::readItems(IDataObject* data)
{
    Items items;
    FORMATETC format = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium = {};
    if (!data || FAILED(data->GetData(&format, &medium)))
        return items;
    const std::unique_ptr<STGMEDIUM, decltype(&ReleaseStgMedium)> owner(&medium, &ReleaseStgMedium);
    const auto drop = static_cast<HDROP>(medium.hGlobal);
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        BasicString<wchar_t> path;
        path.resize(DragQueryFileW(drop, i, nullptr, 0) + 1u); // The call writes a terminator.
        path.resize(DragQueryFileW(drop, i, path.data(), static_cast<UINT>(path.size())));
        items.push_back(path);
    }
    return items;
}

HRESULT ShellExtension::Initialize(PCIDLIST_ABSOLUTE folder, IDataObject* data, HKEY)
{
    return asHRESULT([&] {
        items_ = readItems(data);
        wchar_t path[MAX_PATH];
        folder_ = folder && SHGetPathFromIDListW(folder, path) ? path : L"";
    });
}

void* ShellExtension::queryInterface(const GUID& iid)
{
    if (iid == IID_IShellExtInit)
        return static_cast<IShellExtInit*>(this);
    return IUnknownImpl::queryInterface(iid);
}

HRESULT PropertySheetHandler::AddPages(LPFNSVADDPROPSHEETPAGE add, LPARAM context)
{
    if (!add)
        return E_POINTER;
    return asHRESULT([&] {
        for (const HPROPSHEETPAGE page : createPages()) {
            if (!add(page, context))
                DestroyPropertySheetPage(page);
        }
    });
}

HRESULT PropertySheetHandler::ReplacePage(UINT, LPFNSVADDPROPSHEETPAGE, LPARAM) { return E_NOTIMPL; }

void* PropertySheetHandler::queryInterface(const GUID& iid)
{
    if (iid == IID_IShellPropSheetExt)
        return static_cast<IShellPropSheetExt*>(this);
    return ShellExtension::queryInterface(iid);
}
} // namespace tarn
