// Shows the lines of a log that LogFile has written, filtered and sorted by any column.
//   log-viewer [FILE]

#include "Ids.h"

#include <tarn/tarn.h>

#include <algorithm>
#include <array>
#include <exception>
#include <string>
#include <vector>

using namespace tarn;

namespace {
using Text = BasicString<wchar_t>;
/// Time, thread, level and text.
using Line = std::array<Text, 4>;

Line splitLine(const Text& line)
{
    Line parts;
    Text::size_type at = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const auto end = std::min(line.find(L' ', at), line.size());
        parts[i] = Text(line.substr(at, end - at));
        at = std::min(end + 1, line.size());
    }
    parts[3] = Text(line.substr(at));
    return parts;
}

struct Filter {
    bool admits(const Line& line) const
    {
        const bool isGrave = line[2] == L"ERROR" || line[2] == L"WARNING";
        return (isGrave || !gravesOnly) && line[3].contains(text.c_str());
    }
    std::wstring text;
    bool gravesOnly = false;
};

class FilterDialog : public Dialog {
public:
    FilterDialog(HWND owner, Filter& filter) : Dialog(owner, DIALOG_FILTER, GetModuleHandleW(nullptr))
    {
        values_.addText(ID_TEXT, filter.text);
        values_.addCheck(ID_ERRORS_ONLY, filter.gravesOnly);
        anchors_.add(ID_TEXT, Anchors::left | Anchors::top | Anchors::right);
        for (const int button : {IDOK, IDCANCEL})
            anchors_.add(button, Anchors::right | Anchors::bottom);
    }
    bool onInitDialog(Window&) override
    {
        values_.show(*this);
        anchors_.begin(*this);
        return true;
    }
    void onCommand(Window* sender, unsigned short code, unsigned short id) override
    {
        if (id != IDOK || values_.take(*this))
            Dialog::onCommand(sender, code, id);
    }

private:
    DialogValues values_;
    Anchors anchors_;
};

class LogWindow : public Window, private DropTarget {
public:
    LogWindow()
        : settings_(std::make_unique<RegistrySettingsStore>(HKEY_CURRENT_USER, L"Software\\Tarn\\LogViewer")),
          place_(settings_)
    {
        settings_.declareText(L"Filter", L"");
        settings_.declareFlag(L"GravesOnly", false);
        settings_.load();
        filter_ = {settings_.getText(L"Filter").c_str(), settings_.getFlag(L"GravesOnly")};

        const DPI dpi = DPI::ofSystem();
        static const WindowClass windowClass(0, ID_PROGRAM, nullptr, COLOR_WINDOW, nullptr, GetModuleHandleW(nullptr));
        create(windowClass, L"Log viewer", WS_OVERLAPPEDWINDOW, {CW_USEDEFAULT, CW_USEDEFAULT, 0, 0}, nullptr, nullptr,
               GetModuleHandleW(nullptr));
        setSize(dpi.toPixels(Size(700, 400)), SWP_NOZORDER);
        list_.create(*this, ID_LIST, Rect(), WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS);
        list_.setExtendedListViewStyle(LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
        const std::pair<const wchar_t*, int> columns[] = {
            {L"Time", 160}, {L"Thread", 60}, {L"Level", 80}, {L"Text", 350}};
        for (unsigned i = 0; i < 4; ++i)
            list_.insertColumn(i, columns[i].first, dpi.toPixels(columns[i].second));
        status_.create(*this, ID_STATUS, SBARS_SIZEGRIP);
        onSize(SIZE_RESTORED, getClientSize());
        choose();
        begin(*this);
    }

    void showAsLeft() const { place_.show(*this); }
    void open(const Text& path)
    {
        WindowsFile file = WindowsFile::openToRead(path.c_str());
        LineReader reader(file);
        std::vector<Line> lines;
        for (Text line; reader.readLine(line);)
            lines.push_back(splitLine(line));
        lines_ = std::move(lines);
        setText((Text(L"Log viewer - ") + path).c_str());
        choose();
    }

    void onCommand(Window*, unsigned short, unsigned short id) override
    {
        if (id == ID_OPEN)
            ask();
        else if (id == ID_FILTER)
            filter();
        else if (id == ID_COPY)
            copy();
        else if (id == ID_EXIT)
            destroy();
    }
    LRESULT onNotifyToAnswer(NMHDR& header) override
    {
        const auto text = [this](unsigned item, unsigned column) -> const Text& {
            return lines_[shown_[item]][column];
        };
        return ListView::giveText(header, text) ? 0 : Window::onNotifyToAnswer(header);
    }
    void onNotification(const NMLISTVIEW& notification) override
    {
        if (notification.hdr.code == LVN_BEGINDRAG)
            dragOut();
        if (notification.hdr.code != LVN_COLUMNCLICK)
            return;
        const auto column = static_cast<unsigned>(notification.iSubItem);
        isAscending_ = column != column_ || !isAscending_;
        column_ = column;
        sort();
    }
    void onSize(UINT, const Size& size) override
    {
        if (!status_.isOpen())
            return;
        status_.adjust();
        list_.move(0, 0, size.cx, size.cy - status_.getWindowSize().cy, true);
    }
    void onDestroy() override
    {
        PostQuitMessage(0);
        place_.keep(*this);
        settings_.save();
    }

private:
    void ask()
    {
        OpenFileDialog dialog(*this);
        dialog.setFilters({{L"Logs", L"*.log"}, {L"All files", L"*.*"}});
        if (dialog.showModal())
            open(dialog.getPathW());
    }
    void filter()
    {
        if (FilterDialog(*this, filter_).showModal() != IDOK)
            return;
        settings_.setText(L"Filter", filter_.text.c_str());
        settings_.setFlag(L"GravesOnly", filter_.gravesOnly);
        settings_.save();
        choose();
    }
    Text selected() const
    {
        Text text;
        for (int i = -1; (i = list_.getNextSelectedItem(i)) >= 0;) {
            const Line& line = lines_[shown_[static_cast<std::size_t>(i)]];
            text += line[0] + L" " + line[1] + L" " + line[2] + L" " + line[3] + L"\r\n";
        }
        return text;
    }
    void dragOut()
    {
        DragData data;
        data.setText(selected().c_str());
        data.drag();
    }
    unsigned long onDragOver(const DraggedData& data, unsigned long, const Point&, unsigned long) override
    {
        return data.has(CF_HDROP) ? DROPEFFECT_COPY : DROPEFFECT_NONE;
    }
    unsigned long onDrop(const DraggedData& data, unsigned long, const Point&, unsigned long) override
    {
        open(data.getFiles().at(0));
        return DROPEFFECT_COPY;
    }
    void copy()
    {
        Clipboard clipboard(*this);
        clipboard.clear();
        clipboard.setText(selected().c_str());
    }
    void choose()
    {
        shown_.clear();
        for (std::size_t i = 0; i < lines_.size(); ++i)
            if (filter_.admits(lines_[i]))
                shown_.push_back(i);
        const std::wstring shown = std::to_wstring(shown_.size()), all = std::to_wstring(lines_.size());
        status_.setPartText(0, (shown + L" of " + all + L" lines").c_str());
        sort();
    }
    void sort()
    {
        std::ranges::stable_sort(shown_, [this](std::size_t a, std::size_t b) {
            const int order = lines_[a][column_].compare(lines_[b][column_]);
            return isAscending_ ? order < 0 : order > 0;
        });
        list_.setSortArrow(column_, isAscending_ ? ListView::ascending : ListView::descending);
        list_.setItemCount(static_cast<unsigned>(shown_.size()));
        list_.invalidate(false);
    }

    Settings settings_;
    WindowPlace place_;
    Filter filter_;
    std::vector<Line> lines_;
    std::vector<std::size_t> shown_; // Places in lines_, as they stand in the list.
    unsigned column_ = 0;
    bool isAscending_ = true;
    ListView list_;
    StatusBar status_;
};
} // namespace

int wmain(int argc, wchar_t** argv)
{
    try {
        LogWindow window;
        if (argc > 1)
            window.open(argv[1]);
        window.showAsLeft();
        const AcceleratorTable keys(ID_PROGRAM, GetModuleHandleW(nullptr));
        MessageLoop loop;
        loop.addAccelerators(window, keys);
        return loop.run();
    } catch (const std::exception& error) {
        Window::messageBox(nullptr, whatW(error).c_str(), L"Log viewer", MB_ICONERROR);
        return 1;
    }
}
