#include <tarn/TreeView.h>

namespace tarn {
bool TreeView::onReflectedNotification(const NMTREEVIEWA&) { return false; }
bool TreeView::onReflectedNotification(const NMTREEVIEWW&) { return false; }
} // namespace tarn
