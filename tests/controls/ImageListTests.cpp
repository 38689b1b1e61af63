#include "Controls.h"

#include <tarn/ImageList.h>
#include <tarn/ListView.h>
#include <tarn/TreeView.h>

namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);

void loadStrip(ImageList& list) { list.load(stripResource, ImageList::bitmap, 2, CLR_NONE, LR_DEFAULTCOLOR, program); }
} // namespace

TEST_CASE("ImageList: loads strips, icons and cursors and owns them")
{
    ImageList list;
    list.destroy();
    loadStrip(list);
    CHECK(ImageList_GetImageCount(list) == 4);
    list.load(5, ImageList::icon, 8, CLR_NONE, 0, program);
    CHECK(ImageList_GetImageCount(list) == 1);
    list.load(5, ImageList::cursor, 8, CLR_NONE, 0, program);
    CHECK(ImageList_GetImageCount(list) == 1);
    const HIMAGELIST detached = list.detach();
    CHECK_FALSE(list.isOpen());
    list.attach(detached);
    list.attach(detached); // Again.
    CHECK(ImageList_GetImageCount(detached) == 1);
    ImageList taker;
    loadStrip(taker);
    taker = std::move(list);
    ImageList& same = taker;
    taker = std::move(same);
    CHECK((!list.isOpen() && taker.getHandle() == detached && ImageList(std::move(taker)).isOpen()));
    expectWindowsError([&] { list.load(99, ImageList::bitmap, 2, CLR_NONE, 0, program); }, "Failed to load image list");
    CHECK_FALSE(list.isOpen());
}

TEST_CASE("Image lists are destroyed once, by whoever owns them")
{
    Host host;
    const auto useOnce = [&] {
        ImageList ours, spare;
        loadStrip(ours);
        loadStrip(spare);
        ListView view;
        view.create(host, Rect(0, 0, 10, 10), LVS_REPORT, nullptr);
        const HIMAGELIST first = ours, second = spare;
        view.swapImageList(ListView::small_images, ours);
        CHECK_FALSE(ours.isOpen());
        view.swapImageList(ListView::small_images, spare);
        CHECK(spare.getHandle() == first);
        CHECK(view.sendMessageA(LVM_GETIMAGELIST, LVSIL_SMALL) == reinterpret_cast<LRESULT>(second));

        TreeView tree(Host::makeChild(host, WC_TREEVIEWW, 101, 0));
        CHECK(tree.setImageList(spare, TreeView::normal) == nullptr);
        CHECK(tree.getImageList(TreeView::normal) == first);
        CHECK(tree.setImageList(nullptr, TreeView::normal) == first);
        DestroyWindow(tree);
        ListView().swapImageList(ListView::normal, spare); // A view that is not there takes nothing.
        CHECK(spare.getHandle() == first);
        spare = ours; // A plain copy: the list that spare held has to be taken away before.
        ours.attach(first);
    };
    useOnce();
    const unsigned objects = drawingObjects();
    for (int i = 0; i < 50; ++i)
        useOnce();
    CHECK(drawingObjects() == objects);
}

TEST_CASE("Views: 100,000 items come and go without leaving anything")
{
    const Hosted<ListView> host(WC_LISTVIEWW, LVS_REPORT | LVS_NOSCROLL);
    const ListView& view = host.control;
    for (unsigned i = 0; i < 3; ++i)
        view.insertColumn(i, "column", 30);
    const auto fillAndClear = [&] {
        for (unsigned i = 0; i < 100000; ++i) {
            const int item = view.insertItem(L"the text of an item", &host);
            view.setItemText(static_cast<unsigned>(item), L"and of a subitem", 2);
        }
        CHECK(view.getItemCount() == 100000);
        CHECK(view.getItemTextW(99999, 2) == L"and of a subitem");
        view.deleteAllItems();
        CHECK(view.getItemCount() == 0);
    };
    fillAndClear();
    const std::size_t bytes = usedBytes();
    const unsigned objects = drawingObjects();
    fillAndClear();
    CHECK(usedBytes() < bytes + 100000);
    CHECK(drawingObjects() == objects);
}
