#include "Controls.h"

#include <tarn/TreeView.h>

namespace {
template <class Ch> BasicString<Ch> itemText(const TreeView& tree, HTREEITEM item)
{
    if constexpr (std::is_same_v<Ch, char>)
        return tree.getItemTextA(item);
    else
        return tree.getItemTextW(item);
}

HTREEITEM next(const TreeView& tree, HTREEITEM item, WPARAM relation = TVGN_NEXT)
{
    return reinterpret_cast<HTREEITEM>(tree.sendMessageA(TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

using TreeHost = Hosted<TreeView>;
} // namespace

TEMPLATE_TEST_CASE("TreeView: items of both widths are inserted at their places", "", char, wchar_t)
{
    using Ch = TestType;
    const TreeHost host(WC_TREEVIEWW);
    const TreeView& tree = host.control;
    const HTREEITEM root = tree.insertItem(BasicString<Ch>("root"), 1, 2);
    const HTREEITEM last = tree.insertItem(BasicString<Ch>("last"), root);
    const HTREEITEM first = tree.insertItem(BasicString<Ch>("first"), &host, root, TVI_FIRST);
    const HTREEITEM middle = tree.insertItem(BasicString<Ch>("middle"), 3, 4, address, root, first);
    CHECK((next(tree, first) == middle && next(tree, middle) == last && !next(tree, last)));
    CHECK((tree.getItemData(first) == &host && tree.getItemData(middle) == address && !tree.getItemData(last)));
    const BasicString<Ch> longText(2000, Ch('x'));
    CHECK(itemText<Ch>(tree, middle) == BasicString<Ch>("middle"));
    CHECK(itemText<Ch>(tree, tree.insertItem(longText)) == longText);
    const auto imagesOf = [&](HTREEITEM item) {
        TVITEMEXW attributes{};
        attributes.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        attributes.hItem = item;
        tree.sendMessageA(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&attributes));
        return std::pair(attributes.iImage, attributes.iSelectedImage);
    };
    CHECK((imagesOf(root) == std::pair(1, 2) && imagesOf(middle) == std::pair(3, 4)));
    const auto isExpanded = [&] {
        return (tree.sendMessageA(TVM_GETITEMSTATE, WPARAM(root), TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
    };
    tree.expand(root, TVE_EXPAND);
    CHECK(isExpanded());
    tree.expand(root, TVE_COLLAPSE);
    CHECK(!isExpanded());
    tree.ensureVisible(last);
    CHECK(isExpanded());
    tree.deleteItem(middle);
    CHECK(next(tree, first) == last);
    tree.deleteAllItems();
    CHECK(tree.sendMessageA(TVM_GETCOUNT) == 0);
}

TEST_CASE("TreeView: items are found from their neighbours, selected, renamed and filled later")
{
    const TreeHost host(WC_TREEVIEWW);
    const TreeView& tree = host.control;
    const HTREEITEM root = tree.insertItem("root"), a = tree.insertItem("a", root), b = tree.insertItem("b", root);
    CHECK((tree.getFirstChild(TVI_ROOT) == root && tree.getFirstChild(root) == a && tree.getNextSibling(a) == b));
    CHECK((tree.getParentItem(b) == root && !tree.getNextSibling(b) && !tree.getFirstChild(b)));
    CHECK(tree.getItemCount() == 3);
    tree.selectItem(b);
    CHECK(tree.getSelectedItem() == b);
    tree.selectItem(nullptr);
    CHECK(!tree.getSelectedItem());
    tree.setItemText(a, "narrow");
    tree.setItemText(b, L"w\u00EFde");
    CHECK((tree.getItemTextA(a) == "narrow" && tree.getItemTextW(b) == L"w\u00EFde"));
    tree.setHasChildren(b, true);
    TVITEMEXW item{};
    item.mask = TVIF_CHILDREN;
    item.hItem = b;
    tree.sendMessageA(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    CHECK(item.cChildren == 1);
    expectWindowsError([] { TreeView().selectItem(nullptr); }, "Can't select tree view item");
    expectWindowsError([] { TreeView().setItemText(nullptr, "x"); }, "Can't set tree view item");
    expectWindowsError([] { TreeView().insertItem("x"); }, "Can't insert tree view item");
    expectWindowsError([=] { TreeView().deleteItem(b); }, "Can't delete tree item");
    expectWindowsError([&] { tree.expand(a, TVE_EXPAND); }, "Unable to expand/collapse tree view item");
    expectWindowsError([&] { tree.sortChildren(a, true); }, "Can't sort tree view child items");
    expectWindowsError([&] { (void)tree.getItemTextW(nullptr); }, "Can't retrieve item");
    CHECK(tree.getItemData(nullptr) == nullptr);
}

TEST_CASE("TreeView: sorting reaches the levels below when it is told to")
{
    const TreeHost host(WC_TREEVIEWW);
    const TreeView& tree = host.control;
    const HTREEITEM root = tree.insertItem("root");
    const HTREEITEM b = tree.insertItem("b", root), a = tree.insertItem("a", root);
    const HTREEITEM b2 = tree.insertItem("2", b), b1 = tree.insertItem("1", b);
    const HTREEITEM y = tree.insertItem("y", b1), x = tree.insertItem("x", b1);
    tree.sortChildren(root, false);
    CHECK((next(tree, root, TVGN_CHILD) == a && next(tree, b, TVGN_CHILD) == b2));
    tree.sortChildren(root, true);
    CHECK((next(tree, root, TVGN_CHILD) == a && next(tree, b, TVGN_CHILD) == b1 && next(tree, x) == y));
}
