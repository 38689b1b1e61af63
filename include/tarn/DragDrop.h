#pragma once

/// @file
/// Dragging with the mouse, between windows and between programs: what comes in, and what goes out. Uses COM on the
/// thread, as a single-threaded apartment. Failures throw COMError or WindowsError as HRESULTHolder::throwOnError does.

#include <tarn/BasicString.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/Export.h>
#include <tarn/Point.h>
#include <tarn/Windows.h>

#include <objidl.h>

#include <boost/noncopyable.hpp>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tarn {
/// What is dragged over a window, in the formats of the Clipboard. Throws "Can't get dragged data".
class TARN_API DraggedData {
public:
    /// Adds a reference.
    explicit DraggedData(IDataObject* data) : data_(data) {}

    /// `CF_UNICODETEXT`, `CF_HDROP` or one of Clipboard::registerFormat().
    bool has(unsigned format) const;
    /// Up to the first zero, narrow text (`CF_TEXT`) read in the system's ANSI code page; nothing when there is no
    /// text.
    std::optional<BasicString<wchar_t>> getText() const;
    /// Full paths; empty when there are none.
    std::vector<BasicString<wchar_t>> getFiles() const;
    /// Bytes in a format of one's own, possibly with more of them than were given; nothing when there is none.
    std::optional<std::vector<std::byte>> getData(unsigned format) const;

private:
    COMInterfacePointer<IDataObject> data_;
};

/// Takes what the user drops on a window, from any program:
///
///     struct Taker : DropTarget {
///         unsigned long onDragOver(const DraggedData& data, unsigned long, const Point&, unsigned long) override
///         {
///             return data.has(CF_HDROP) ? DROPEFFECT_COPY : DROPEFFECT_NONE;
///         }
///         unsigned long onDrop(const DraggedData& data, unsigned long, const Point&, unsigned long) override
///         {
///             open(data.getFiles());
///             return DROPEFFECT_COPY;
///         }
///     };
///
/// The handlers get the `MK_...` that are down, a place in client coordinates and the `DROPEFFECT_...` that the source
/// allows, of which they return one. What they throw refuses the drop, and comes out of the loop of the window's
/// thread.
///
/// Keep it beside the window's object; it may end before the window or after it. Used by the window's thread.
class TARN_API DropTarget : private boost::noncopyable {
public:
    DropTarget();
    /// It throws nothing itself, but stands beside Window as a base.
    virtual ~DropTarget() noexcept(false);

    /// From now on, until the window or the object ends. Throws "Can't initialize COM", "Can't accept drops", also when
    /// another object does.
    void begin(HWND window);
    /// No more drops.
    void end();

protected:
    /// While it is dragged over the window: what a drop would do there. By default `DROPEFFECT_COPY`.
    virtual unsigned long onDragOver(const DraggedData& data, unsigned long keys, const Point& position,
                                     unsigned long allowed);
    /// It is taken elsewhere, or the user has cancelled.
    virtual void onDragLeave();
    /// What was done with it. After `DROPEFFECT_MOVE` the source deletes what it had.
    virtual unsigned long onDrop(const DraggedData& data, unsigned long keys, const Point& position,
                                 unsigned long allowed) = 0;

private:
    class DropTargetRegistration; // Derived classes see private names, and should see none that a program has.
    friend class DropTargetObject;

    std::unique_ptr<DropTargetRegistration> registration_;
};

/// What the user drags out of a window, copied here. Put the same thing in several formats, the best one first:
///
///     DragData data;
///     data.setText(L"Hello");
///     data.drag(); // In onLeftButtonDown(), once `DragDetect` says so, or for `LVN_BEGINDRAG`.
class TARN_API DragData {
public:
    /// Narrow text is read in the system's ANSI code page.
    ///@{
    void setText(const char* text);
    void setText(const wchar_t* text);
    ///@}
    /// Full paths, for the shell to copy them.
    void setFiles(std::span<const BasicString<wchar_t>> files);
    /// Bytes in a format of Clipboard::registerFormat().
    void setData(unsigned format, std::span<const std::byte> data);

    /// Lets the user drag it until the mouse button is released, and gives what was done with it: one of `allowed`,
    /// made of `DROPEFFECT_...`, or `DROPEFFECT_NONE`. After `DROPEFFECT_MOVE` delete what was dragged. What handlers
    /// throw meanwhile ends it and comes out of it. Throws "Can't initialize COM", "Can't drag data".
    unsigned long drag(unsigned long allowed = DROPEFFECT_COPY) const;

private:
    friend class DataObject;

    struct Format {
        unsigned number;
        std::vector<std::byte> data;
    };

    std::vector<Format> formats_;
};
} // namespace tarn
