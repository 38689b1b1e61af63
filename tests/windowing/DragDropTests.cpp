#include "Windows.h"

#include <tarn/Clipboard.h>
#include <tarn/DragDrop.h>

namespace {
/// A visible window under the mouse.
struct Taker : OpenWindow, DropTarget {
    Taker() : OpenWindow(WS_POPUP | WS_VISIBLE)
    {
        SetWindowPos(*this, HWND_TOPMOST, 10, 20, 200, 100, SWP_SHOWWINDOW);
        SetCursorPos(60, 80);
        begin(*this);
    }
    unsigned long onDragOver(const DraggedData& data, unsigned long, const Point& position, unsigned long) override
    {
        over = position;
        return whenOver ? whenOver(data) : DROPEFFECT_COPY;
    }
    unsigned long onDrop(const DraggedData& data, unsigned long, const Point&, unsigned long) override
    {
        text = data.getText().value_or(L"none");
        files = data.getFiles();
        whenDropped(data);
        return DROPEFFECT_MOVE | DROPEFFECT_COPY;
    }
    Point over;
    std::function<unsigned long(const DraggedData&)> whenOver;
    std::function<void(const DraggedData&)> whenDropped = [](const DraggedData&) {};
    BasicString<wchar_t> text;
    std::vector<BasicString<wchar_t>> files;
};
} // namespace

// No button is down in them, so that everything is dropped at once.

TEST_CASE("DragDrop: what is dropped on a window comes to its target in all its formats")
{
    Taker taker;
    const unsigned own = Clipboard::registerFormat(L"Tarn++ dragged");
    const std::vector<BasicString<wchar_t>> files{L"C:\\a.txt", L"C:\\\u03B1.txt"};
    const std::vector<std::byte> bytes{std::byte(7), std::byte(0)};
    DragData data;
    data.setText("narrow");
    data.setFiles(files);
    data.setData(own, bytes);
    taker.whenDropped = [&](const DraggedData& dropped) {
        const auto read = dropped.getData(own);
        CHECK((dropped.has(own) && !dropped.has(CF_BITMAP) && read && read->at(0) == std::byte(7)));
    };
    CHECK(data.drag(DROPEFFECT_COPY) == DROPEFFECT_COPY);
    CHECK((taker.text == L"narrow" && taker.files == files));
    CHECK((taker.over.x == 50 && taker.over.y == 60));
    taker.whenDropped = [](const DraggedData&) {};
    DragData old;
    old.setData(CF_TEXT, std::as_bytes(std::span("of old", 6)));
    CHECK((old.drag() == DROPEFFECT_COPY && taker.text == L"of old"));
}

TEST_CASE("DragDrop: a target that refuses, or has ended, gets nothing")
{
    Taker taker;
    DragData data;
    data.setText(L"\u03B1");
    SECTION("by its answer")
    {
        taker.whenOver = [](const DraggedData& dragged) { return dragged.has(CF_HDROP) ? 1ul : 0ul; };
    }
    SECTION("by itself") { taker.end(); }
    CHECK(data.drag() == DROPEFFECT_NONE);
    CHECK(taker.text.empty());
}

TEST_CASE("DragDrop: what a handler throws comes out of the drag")
{
    Taker taker;
    DragData data;
    data.setText(L"x");
    const auto fail = [](const DraggedData&) -> unsigned long { throw std::runtime_error("in a handler"); };
    SECTION("over the window") { taker.whenOver = fail; }
    SECTION("in dropping") { taker.whenDropped = fail; }
    expectError<std::runtime_error>([&] { data.drag(); }, "in a handler");
}

TEST_CASE("DragDrop: a target ends with its window, also in its own handler")
{
    auto taker = std::make_unique<Taker>();
    DragData data;
    data.setText(L"x");
    taker->whenDropped = [&](const DraggedData&) { taker->destroy(); };
    CHECK(data.drag() == DROPEFFECT_COPY);
    open(*taker, WS_POPUP | WS_VISIBLE);
    Taker other;
    taker->begin(*taker);
    const auto refused = thrownBy<COMError>([&] { other.begin(*taker); });
    CHECK(refused.getHRESULT() == DRAGDROP_E_ALREADYREGISTERED);
    taker->end();
    other.begin(*taker);
    taker.reset();
}
