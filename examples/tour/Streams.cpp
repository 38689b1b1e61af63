#include "Tour.h"

#include <tarn/Archive.h>
#include <tarn/BasicString.h>
#include <tarn/MemoryStream.h>
#include <tarn/NewerData.h>
#include <tarn/StandardStreams.h>
#include <tarn/TextLines.h>

#include <cstdio>
#include <iomanip>
#include <iostream>

namespace {
/// A person and the person's friend, who may well be the person's friend in turn.
class Person final : public tarn::Serializable {
public:
    Person() = default;
    Person(const char* itsName, int itsAge) : name(itsName), age(itsAge) {}

    void serialize(tarn::OutputStream& out) const override
    {
        out << name << age;
        tarn::writeOptional(out, friendOfMine);
    }
    void deserialize(tarn::InputStream& in) override
    {
        in >> name >> age;
        tarn::readOptional(in, friendOfMine);
    }

    tarn::BasicString<char> name;
    int age = 0;
    tarn::ref_ptr<Person> friendOfMine;
};
const tarn::SerializableImpl<Person> personRegistration("class tour::Person");

void showBytes(tarn::MemoryOutputStream& stream)
{
    const auto* const bytes = static_cast<const unsigned char*>(stream.getData());
    for (unsigned i = 0; i < stream.getSize(); ++i)
        std::printf("%02x ", bytes[i]);
    std::printf("\n");
}

void showValues()
{
    tarn::MemoryOutputStream out;
    out << 1999 << true << L"\x20AC" << "uro";
    std::cout << "1999, true, a wide euro sign and \"uro\" are " << out.getSize() << " bytes:\n  " << std::flush;
    showBytes(out);

    const unsigned char picture[] = {0x00, 0x00, 0x02, 0x80, 0x00, 0x00, 0x01, 0xE0};
    tarn::MemoryInputStream header(picture, sizeof picture);
    int width = 0, height = 0;
    header >> tarn::BigEndian >> width >> height;
    std::cout << "a picture's header with the high byte first: " << width << " x " << height << '\n';
}

void showText()
{
    tarn::MemoryOutputStream file;
    tarn::LineWriter writer(file, {.encoding = tarn::utf16, .byteOrderMark = true});
    writer.writeLine(L"\x201ETerns\x201C");
    writer.writeLine(L"second");
    tarn::MemoryInputStream bytes(file.getData(), static_cast<unsigned>(file.getSize()));
    tarn::LineReader reader(bytes); // The byte order mark says what it is.
    tarn::BasicString<wchar_t> line;
    while (reader.readLine(line))
        std::cout << "line " << reader.getLineNumber() << ": " << line.size() << " characters\n";

    tarn::StreamBuffer buffer(static_cast<tarn::OutputStream&>(file));
    std::ostream(&buffer) << std::setw(6) << 42 << std::flush;
    std::cout << "with what a standard stream wrote there are " << file.getSize() << " bytes\n";
}

void showGraph()
{
    tarn::MemoryOutputStream out;
    {
        const tarn::ref_ptr<Person> ada(new Person("Ada", 36)), charles(new Person("Charles", 59));
        ada->friendOfMine = charles;
        charles->friendOfMine = ada;
        tarn::MemoryInputStream nothing;
        tarn::Archive archive(nothing, out);
        archive << ada << charles;
        ada->friendOfMine.release();
    }
    std::cout << "two friends, each knowing the other, take " << out.getSize() << " bytes in an archive\n";

    tarn::ref_ptr<Person> ada, charles;
    {
        tarn::MemoryInputStream in(out.getData(), static_cast<unsigned>(out.getSize()));
        tarn::Archive archive(in, out);
        archive >> ada >> charles;
    }
    std::cout << "read back: " << ada->name << " (" << ada->age << ") and " << charles->name << " (" << charles->age
              << "); " << charles->name << "'s friend is "
              << (charles->friendOfMine == ada ? "the very same object" : "another object") << '\n';

    tarn::MemoryInputStream half(out.getData(), static_cast<unsigned>(out.getSize()) / 2);
    tarn::Archive damaged(half, out);
    tarn::ref_ptr<Person> nobody;
    try {
        damaged >> nobody;
    } catch (const tarn::EndOfFile& e) {
        std::cout << "reading half of it: " << e.what();
    }
    ada->friendOfMine.release();
}

/// A song as one version of a program knows it. It keeps what a newer one adds.
class Song final : public tarn::Serializable, public tarn::NewerData {
public:
    static constexpr unsigned int classVersion = 1;
    void serialize(tarn::OutputStream& out) const override { out << title; }
    void deserialize(tarn::InputStream& in) override { in >> title; }

    std::string title;
};

/// The same in the next version, which reads what both wrote.
class NewerSong final : public tarn::Serializable {
public:
    static constexpr unsigned int classVersion = 2;
    void serialize(tarn::OutputStream& out) const override { out << title << seconds; }
    void deserialize(tarn::InputStream& in) override
    {
        in >> title;
        if (tarn::versionOf(in) >= 2)
            in >> seconds;
    }

    std::string title;
    int seconds = 0;
};

// Two programs are one here. So their classes have names of their own, and the data change these on the way.
const tarn::SerializableImpl<Song> songRegistration("class tour1::Song");
const tarn::SerializableImpl<NewerSong> newerSongRegistration("class tour2::Song");

template <class T, class Other> tarn::ref_ptr<T> passedOn(const tarn::ref_ptr<Other>& song, char program)
{
    tarn::MemoryOutputStream out;
    tarn::MemoryInputStream nothing;
    tarn::Archive(nothing, out).writeObject(tarn::ref_ptr<tarn::Serializable>(song));
    std::string data(static_cast<const char*>(out.getData()), static_cast<std::size_t>(out.getSize()));
    data[data.find("::Song") - 1] = program;
    tarn::MemoryInputStream in(data.data(), static_cast<unsigned>(data.size()));
    return tarn::Archive(in, out).load<T>();
}

void showVersions()
{
    const tarn::ref_ptr<NewerSong> song(new NewerSong);
    song->title = "High Water";
    song->seconds = 215;
    const tarn::ref_ptr<Song> known = passedOn<Song>(song, '1');
    known->title += " (live)";
    const tarn::ref_ptr<NewerSong> back = passedOn<NewerSong>(known, '2');
    std::cout << "an older program made it \"" << back->title << "\" and kept its " << back->seconds << " seconds\n";
}

void showStreams()
{
    showValues();
    showText();
    showGraph();
    showVersions();
}

const tour::Section section(20, "Streams and object graphs", &showStreams);
} // namespace
