#include "Controls.h"

#include <tarn/MemoryStream.h>
#include <tarn/RichEdit.h>

namespace {
struct Field : Host {
    Field() { edit.create(*this, 5, Rect(0, 0, 180, 80), WS_VISIBLE | ES_MULTILINE); }
    std::string saved(RichEdit::text_format kind, bool selectionOnly = false) const
    {
        MemoryOutputStream out;
        edit.save(out, kind, selectionOnly);
        return std::string(static_cast<const char*>(out.getData()), static_cast<std::size_t>(out.getSize()));
    }
    void load(const std::string& text, RichEdit::text_format kind, bool intoSelection = false) const
    {
        MemoryInputStream in(text.data(), static_cast<unsigned>(text.size()));
        edit.load(in, kind, intoSelection);
    }
    RichEdit edit;
};
} // namespace

TEST_CASE("RichEdit: text goes through streams in UTF-8, as a whole and of the selection")
{
    const Field field;
    CHECK(field.edit.sendMessageA(EM_GETLIMITTEXT) == 0x7FFFFFFE);
    field.load("\xCE\xB1 one\r\ntwo", RichEdit::plain);
    CHECK(field.edit.getTextW() == L"\u03B1 one\r\ntwo");
    field.edit.setSelection(2, 5);
    CHECK(field.edit.getSelection() == std::pair(2, 5));
    CHECK(field.saved(RichEdit::plain, true) == "one");
    field.load("1", RichEdit::plain, true);
    CHECK(field.saved(RichEdit::plain) == "\xCE\xB1 1\r\ntwo");
    std::string lines = "\xEF\xBB\xBF"; // A mark, which is no text.
    for (int i = 0; i < 1000; ++i)
        lines += "A line that is not very short, of many.\r\n";
    field.load(lines, RichEdit::plain); // More than such a control holds at first.
    CHECK(field.saved(RichEdit::plain) == lines.substr(3));
    field.edit.setSelection(0, -1);
    field.edit.replaceSelection("narrow ");
    field.edit.replaceSelection(L"\u03B1");
    CHECK(field.edit.getTextW() == L"narrow \u03B1");
}

TEST_CASE("RichEdit: how the selection looks is set, asked and kept in Rich Text")
{
    const Field field;
    field.edit.setText(L"plain bold");
    field.edit.setSelection(6, 10);
    RichEdit::CharacterFormat format;
    format.isBold = format.isStruckOut = true, format.isUnderlined = false;
    format.size = 10.5;
    format.colour = RGB(200, 0, 0);
    format.font = L"Arial";
    field.edit.setFormat(format);
    const std::string rich = field.saved(RichEdit::rtf);
    field.edit.setText(L"");
    field.load(rich, RichEdit::rtf);
    field.edit.setSelection(6, 10);
    const auto read = field.edit.getFormat();
    CHECK((read.isBold == true && read.isUnderlined == false && read.size == 10.5 && read.font == L"Arial"));
    CHECK((read.colour == RGB(200, 0, 0) && read.isStruckOut == true && read.isItalic == false));
    const std::string part = field.saved(RichEdit::rtf, true);
    CHECK((part.find("bold") != part.npos && part.find("plain") == part.npos));
    format = {};
    format.isItalic = true;
    field.edit.setFormat(format);
    CHECK((field.edit.getFormat().isItalic == true && field.edit.getFormat().isBold == true));
    field.edit.setSelection(0, -1);
    const auto mixed = field.edit.getFormat();
    CHECK((!mixed.isBold && !mixed.size && mixed.isUnderlined == false));
}

TEST_CASE("RichEdit: what a stream throws comes out of loading and saving")
{
    struct : InputStream, OutputStream {
        unsigned int read(void*, unsigned int) override { throw std::runtime_error("in reading"); }
        unsigned int write(const void*, unsigned int) override { throw std::runtime_error("in writing"); }
    } broken;
    const Field field;
    field.edit.setText("text");
    expectError<std::runtime_error>([&] { field.edit.load(broken); }, "in reading");
    expectError<std::runtime_error>([&] { field.edit.save(broken); }, "in writing");
    expectWindowsError([&] { RichEdit().save(broken); }, ERROR_INVALID_WINDOW_HANDLE, "Can't save text");
    expectWindowsError([&] { RichEdit().load(broken, RichEdit::rtf); }, "Can't load text");
    expectWindowsError([] { RichEdit().setFormat({}); }, "Can't set character format");
}
