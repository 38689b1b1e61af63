#include <tarn/ShellExtension.h>

#include "../windowing/GlobalData.h"

#include <memory>

namespace tarn {
ShellExtension::Items ShellExtension::readItems(IDataObject* data)
{
    FORMATETC format = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium = {};
    if (!data || FAILED(data->GetData(&format, &medium)))
        return {};
    const std::unique_ptr<STGMEDIUM, decltype(&ReleaseStgMedium)> owner(&medium, &ReleaseStgMedium);
    return filesIn(medium.hGlobal, "Can't get selected files");
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
