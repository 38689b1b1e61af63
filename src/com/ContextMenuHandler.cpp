#include <tarn/ShellExtension.h>

#include "../foundation/Check.h"

#include <shellapi.h>

#include <algorithm>

namespace tarn {
namespace {
// A caller may give the command by its number instead of by its verb.
bool isNumber(const void* verb) { return IS_INTRESOURCE(verb); }

bool copyText(const BasicString<wchar_t>& text, wchar_t* to, UINT size)
{
    if (text.size() >= size)
        return false;
    std::copy_n(text.c_str(), text.size() + 1, to);
    return true;
}

bool copyText(const BasicString<wchar_t>& text, char* to, UINT size)
{
    const BasicString<char> narrow(text.c_str());
    if (narrow.size() >= size)
        return false;
    std::copy_n(narrow.c_str(), narrow.size() + 1, to);
    return true;
}

HRESULT giveText(const BasicString<wchar_t>& text, bool wide, char* to, UINT size)
{
    if (text.empty())
        return E_NOTIMPL;
    if (!to)
        return E_POINTER;
    const bool fits = wide ? copyText(text, reinterpret_cast<wchar_t*>(to), size) : copyText(text, to, size);
    return fits ? S_OK : HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);
}
} // namespace

struct ContextMenuHandler::ContextMenuInternals {
    static const std::vector<Command>& commands(ContextMenuHandler& handler)
    {
        if (!handler.hasCommands_) {
            handler.commands_ = handler.getCommands();
            handler.hasCommands_ = true;
        }
        return handler.commands_;
    }
    static const Command* find(ContextMenuHandler& handler, const CMINVOKECOMMANDINFO& info);
};

HRESULT ContextMenuHandler::QueryContextMenu(HMENU menu, UINT position, UINT firstID, UINT lastID, UINT flags)
{
    if (flags & CMF_DEFAULTONLY) // A double click runs the type's own default.
        return S_OK;
    unsigned count = 0;
    const HRESULT hr = asHRESULT([&] {
        for (const Command& command : ContextMenuInternals::commands(*this)) {
            if (firstID + count > lastID)
                break;
            const UINT kind = MF_BYPOSITION | (command.text.empty() ? MF_SEPARATOR : MF_STRING);
            ensure(InsertMenuW(menu, position + count, kind, firstID + count, command.text.c_str()),
                   "Can't insert command into menu");
            ++count;
        }
    });
    if (SUCCEEDED(hr)) // The caller skips as many identifiers as the result says.
        return MAKE_HRESULT(SEVERITY_SUCCESS, FACILITY_NULL, count);
    while (count > 0)
        DeleteMenu(menu, position + --count, MF_BYPOSITION);
    return hr;
}

const ContextMenuHandler::Command* ContextMenuHandler::ContextMenuInternals::find(ContextMenuHandler& handler,
                                                                                  const CMINVOKECOMMANDINFO& info)
{
    const auto& all = commands(handler);
    const auto& wide = reinterpret_cast<const CMINVOKECOMMANDINFOEX&>(info);
    const bool hasWide = info.cbSize >= sizeof wide && info.fMask & CMIC_MASK_UNICODE && !isNumber(wide.lpVerbW);
    if (!hasWide && isNumber(info.lpVerb)) {
        const auto index = reinterpret_cast<ULONG_PTR>(info.lpVerb);
        return index < all.size() ? &all[index] : nullptr;
    }
    const BasicString<wchar_t> verb = hasWide ? BasicString<wchar_t>(wide.lpVerbW) : a2w(info.lpVerb, CP_ACP);
    const auto found = std::ranges::find_if(all, [&](const Command& command) {
        return !command.verb.empty() && StringHelper<wchar_t>::icmp(command.verb.c_str(), verb.c_str()) == 0;
    });
    return found == all.end() ? nullptr : &*found;
}

HRESULT ContextMenuHandler::InvokeCommand(CMINVOKECOMMANDINFO* info)
{
    if (!info)
        return E_POINTER;
    return asHRESULT([&] {
        const Command* const command = ContextMenuInternals::find(*this, *info);
        if (!command || !command->action)
            return E_FAIL; // So that the caller asks the next handler.
        command->action(info->hwnd);
        return S_OK;
    });
}

HRESULT ContextMenuHandler::GetCommandString(UINT_PTR index, UINT what, UINT*, CHAR* text, UINT size)
{
    return asHRESULT([&] {
        const auto& all = ContextMenuInternals::commands(*this);
        const bool exists = index < all.size();
        switch (what) {
        case GCS_VALIDATEA:
        case GCS_VALIDATEW:
            return exists ? S_OK : S_FALSE;
        case GCS_VERBA:
        case GCS_VERBW:
            return exists ? giveText(all[index].verb, what == GCS_VERBW, text, size) : E_INVALIDARG;
        case GCS_HELPTEXTA:
        case GCS_HELPTEXTW:
            return exists ? giveText(all[index].help, what == GCS_HELPTEXTW, text, size) : E_INVALIDARG;
        default:
            return E_NOTIMPL;
        }
    });
}

void* ContextMenuHandler::queryInterface(const GUID& iid)
{
    if (iid == IID_IContextMenu)
        return static_cast<IContextMenu*>(this);
    return ShellExtension::queryInterface(iid);
}
} // namespace tarn
