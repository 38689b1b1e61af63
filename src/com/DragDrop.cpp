#include <tarn/DragDrop.h>

#include <tarn/Exception.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "../windowing/GlobalData.h"
#include "../windowing/HandlerScope.h"
#include "../windowing/Subclass.h"

#include <ole2.h>
#include <shlobj.h>

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
constexpr const char* cannotGetDragged = "Can't get dragged data";
constexpr const char* cannotAccept = "Can't accept drops";
constexpr const char* cannotDrag = "Can't drag data";

FORMATETC formatOf(unsigned number)
{
    return {static_cast<CLIPFORMAT>(number), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

/// What dragging needs beyond COM.
class OleApartment {
public:
    OleApartment() { HRESULTHolder::throwOnError(OleInitialize(nullptr), "Can't initialize COM"); }
    OleApartment(const OleApartment&) = delete;
    OleApartment& operator=(const OleApartment&) = delete;
    ~OleApartment() { OleUninitialize(); }
};

/// Hands what `read` makes of a format's block, and nothing when the format is missing.
template <class Read> auto readFormat(IDataObject& data, unsigned number, Read read)
{
    using Result = std::optional<decltype(read(HGLOBAL()))>;
    FORMATETC format = formatOf(number);
    if (data.QueryGetData(&format) != S_OK)
        return Result();
    STGMEDIUM medium{};
    HRESULTHolder::throwOnError(data.GetData(&format, &medium), cannotGetDragged);
    const std::unique_ptr<STGMEDIUM, decltype(&ReleaseStgMedium)> owner(&medium, &ReleaseStgMedium);
    return Result(read(medium.hGlobal));
}
} // namespace

bool DraggedData::has(unsigned format) const
{
    FORMATETC asked = formatOf(format);
    return data_->QueryGetData(&asked) == S_OK;
}
std::optional<BasicString<wchar_t>> DraggedData::getText() const
{
    const auto wide = [](HGLOBAL block) { return textIn(block, cannotGetDragged); };
    const auto narrow = [](HGLOBAL block) {
        Bytes bytes = bytesIn(block, cannotGetDragged);
        bytes.push_back(std::byte()); // It need not be terminated.
        return a2w(reinterpret_cast<const char*>(bytes.data()), CP_ACP);
    };
    auto text = readFormat(*data_.get(), CF_UNICODETEXT, wide);
    return text ? text : readFormat(*data_.get(), CF_TEXT, narrow); // Which the clipboard alone makes of each other.
}
std::vector<BasicString<wchar_t>> DraggedData::getFiles() const
{
    const auto files = [](HGLOBAL block) { return filesIn(block, cannotGetDragged); };
    return readFormat(*data_.get(), CF_HDROP, files).value_or(std::vector<BasicString<wchar_t>>());
}
std::optional<std::vector<std::byte>> DraggedData::getData(unsigned format) const
{
    return readFormat(*data_.get(), format, [](HGLOBAL block) { return bytesIn(block, cannotGetDragged); });
}

/// What the system calls for a window, with the target for as long as there is one.
class DropTargetObject final : public IDropTarget, public IUnknownImpl {
public:
    DropTargetObject(DropTarget& target, HWND window) : IUnknownImpl(nullptr), target_(&target), window_(window) {}
    TARN_IUNKNOWN_METHODS

    void forget() { target_ = nullptr; }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) override
    {
        data_.emplace(data);
        return DragOver(keys, place, effect);
    }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL place, DWORD* effect) override
    {
        return choose(effect, __builtin_return_address(0),
                      [&](DWORD allowed) { return target_->onDragOver(*data_, keys, inWindow(place), allowed); });
    }
    HRESULT STDMETHODCALLTYPE DragLeave() override
    {
        return handle(__builtin_return_address(0), [&] {
            data_.reset();
            target_->onDragLeave();
        });
    }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) override
    {
        data_.reset();
        const DraggedData dropped(data);
        return choose(effect, __builtin_return_address(0),
                      [&](DWORD allowed) { return target_->onDrop(dropped, keys, inWindow(place), allowed); });
    }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IDropTarget ? static_cast<IDropTarget*>(this) : IUnknownImpl::queryInterface(iid);
    }

private:
    Point inWindow(const POINTL& place) const { return Window(window_).fromScreen(Point(place.x, place.y)); }

    // A handler may end the target, and with it this object.
    template <class Call> HRESULT handle(const void* caller, Call call)
    {
        const COMInterfacePointer<IDropTarget> alive(this);
        const auto body = [&] {
            if (target_)
                call();
            return S_OK;
        };
        return guardedCallback<HRESULT>(E_FAIL, {"a handler of a drop target", nullptr, 0}, body, caller);
    }
    template <class Call> HRESULT choose(DWORD* effect, const void* caller, Call call)
    {
        const DWORD allowed = std::exchange(*effect, DROPEFFECT_NONE);
        return handle(caller, [&] { *effect = call(allowed) & allowed; });
    }

    DropTarget* target_;
    HWND window_;
    std::optional<DraggedData> data_;
};

/// Of a window, until it ends.
class DropTarget::DropTargetRegistration : private boost::noncopyable {
public:
    DropTargetRegistration(DropTarget& target, HWND window)
        : target_(target), object_(new DropTargetObject(target, window)), alive_(object_),
          subclass_(window, onMessage, this, cannotAccept)
    {
        HRESULTHolder::throwOnError(RegisterDragDrop(window, object_), cannotAccept);
    }
    ~DropTargetRegistration()
    {
        object_->forget();
        RevokeDragDrop(subclass_.getWindow());
    }

private:
    static LRESULT CALLBACK onMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR self)
    {
        if (msg == WM_DESTROY) // Later the system would not know the window any more.
            reinterpret_cast<DropTargetRegistration*>(self)->target_.end();
        return DefSubclassProc(hwnd, msg, wParam, lParam);
    }

    OleApartment ole_; // First, so that it ends last.
    DropTarget& target_;
    DropTargetObject* object_;
    COMInterfacePointer<IDropTarget> alive_;
    Subclass subclass_;
};

DropTarget::DropTarget() = default;
DropTarget::~DropTarget() noexcept(false) = default;

void DropTarget::begin(HWND window)
{
    end();
    registration_ = std::make_unique<DropTargetRegistration>(*this, window);
}
void DropTarget::end() { registration_.reset(); }

unsigned long DropTarget::onDragOver(const DraggedData&, unsigned long, const Point&, unsigned long)
{
    return DROPEFFECT_COPY;
}
void DropTarget::onDragLeave() {}

/// What a target gets: it may keep it longer than the drag lasts.
class DataObject final : public IDataObject, public IUnknownImpl {
public:
    explicit DataObject(const DragData& data) : IUnknownImpl(nullptr), formats_(data.formats_) {}
    TARN_IUNKNOWN_METHODS

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* asked, STGMEDIUM* medium) override
    {
        if (!asked || !medium)
            return E_POINTER;
        const auto* const found = find(*asked);
        return found ? asHRESULT([&] {
            *medium = STGMEDIUM();
            medium->tymed = TYMED_HGLOBAL;
            medium->hGlobal = globalCopyOf(found->data, cannotDrag).release();
        })
                     : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* asked) override
    {
        return asked && find(*asked) ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override
    {
        if (direction != DATADIR_GET)
            return E_NOTIMPL;
        return asHRESULT([&] {
            std::vector<FORMATETC> all;
            for (const DragData::Format& format : formats_)
                all.push_back(formatOf(format.number));
            return SHCreateStdEnumFmtEtc(static_cast<UINT>(all.size()), all.data(), formats);
        });
    }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* same) override
    {
        if (same)
            same->ptd = nullptr;
        return DATA_S_SAMEFORMATETC;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return DV_E_FORMATETC; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override
    {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IDataObject ? static_cast<IDataObject*>(this) : IUnknownImpl::queryInterface(iid);
    }

private:
    const DragData::Format* find(const FORMATETC& asked) const
    {
        const auto found = std::ranges::find(formats_, unsigned(asked.cfFormat), &DragData::Format::number);
        const bool fits = (asked.tymed & TYMED_HGLOBAL) && asked.dwAspect == DVASPECT_CONTENT;
        return fits && found != formats_.end() ? &*found : nullptr;
    }

    const std::vector<DragData::Format> formats_;
};

namespace {
/// Says when dragging ends.
class DropSource final : public IDropSource, public IUnknownImpl {
public:
    DropSource() : IUnknownImpl(nullptr) {}
    TARN_IUNKNOWN_METHODS

    void cancel() noexcept
    {
        isCancelled_ = true;
        if (const HWND tracker = GetCapture()) // It asks when the mouse moves.
            PostMessageW(tracker, WM_MOUSEMOVE, 0, 0);
    }

    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL isEscape, DWORD keys) override
    {
        if (isEscape || isCancelled_)
            return DRAGDROP_S_CANCEL;
        return keys & (MK_LBUTTON | MK_RBUTTON) ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IDropSource ? static_cast<IDropSource*>(this) : IUnknownImpl::queryInterface(iid);
    }

private:
    bool isCancelled_ = false;
};
} // namespace

void DragData::setText(const char* text) { setText(a2w(text, CP_ACP).c_str()); }
void DragData::setText(const wchar_t* text) { formats_.push_back({CF_UNICODETEXT, bytesOfText(text)}); }
void DragData::setFiles(std::span<const BasicString<wchar_t>> files)
{
    formats_.push_back({CF_HDROP, bytesOfFiles(files)});
}
void DragData::setData(unsigned format, std::span<const std::byte> data)
{
    formats_.push_back({format, Bytes(data.begin(), data.end())});
}

unsigned long DragData::drag(unsigned long allowed) const
{
    const OleApartment ole;
    const COMInterfacePointer<IDataObject> data(new DataObject(*this));
    auto* const source = new DropSource;
    const COMInterfacePointer<IDropSource> alive(source);
    DWORD effect = DROPEFFECT_NONE;
    const HRESULT result = runningLoop([&] { return DoDragDrop(data.get(), source, allowed, &effect); },
                                       [=]() noexcept { source->cancel(); });
    HRESULTHolder::throwOnError(result, cannotDrag);
    return result == DRAGDROP_S_DROP ? effect : static_cast<DWORD>(DROPEFFECT_NONE);
}
} // namespace tarn
