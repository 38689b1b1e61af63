// Saves a graph of objects and has a second process read it. The document is a tree whose elements know
// their parents and share two styles: all that is the same after reading.
//
//     objectgraph                 makes, saves and shows a document, and starts itself to read it
//     objectgraph --read <file>   reads a document and shows it

#include "Document.h"
#include "Explain.h"

#include <tarn/FramedStream.h>
#include <tarn/MemoryStream.h>
#include <tarn/ObjectGraph.h>
#include <tarn/StdIOStream.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <process.h>

using namespace document;

namespace {
ElementPtr makeDocument()
{
    const tarn::ref_ptr<Style> heading(new Style("Arial", 16)), body(new Style("Times", 11));
    const ElementPtr report = make<Section>("The year in birds", heading);
    const ElementPtr spring = make<Section>("Spring", heading);
    Element::add(spring, make<Paragraph>("The swifts came on May 3rd.", body));
    Element::add(spring, make<Paragraph>("Two pairs nested.", body));
    Element::add(report, spring);
    Element::add(report, make<Paragraph>("In autumn all was quiet.", body));
    return report;
}

void save(const ElementPtr& document, const std::string& file)
{
    tarn::StdIOStream stream(file.c_str(), "wb");
    tarn::FramedOutputStream frame(stream);
    tarn::Archive archive(stream, frame);
    archive << document;
    frame.close();
    stream.flush();
}

ElementPtr load(const std::string& file)
{
    tarn::StdIOStream stream(file.c_str(), "rb");
    tarn::FramedInputStream frame(stream);
    tarn::Archive archive(frame, stream);
    const ElementPtr document = archive.load<Element>();
    frame.finish();
    return document;
}

void show(const char* title, const ElementPtr& document)
{
    std::cout << title << '\n';
    document->print(std::cout);
    std::cout << std::flush;
}

void explainSmallArchive()
{
    const tarn::ref_ptr<Style> style(new Style("Arial", 16));
    const ElementPtr section = make<Section>("Section", style);
    Element::add(section, make<Paragraph>("Paragraph", style));
    tarn::MemoryInputStream nothing;
    tarn::MemoryOutputStream bytes;
    tarn::Archive archive(nothing, bytes);
    archive << section;

    std::printf("\nThe %u bytes of a section and its paragraph, which share a style:\n",
                static_cast<unsigned>(bytes.getSize()));
    tarn::MemoryInputStream in(bytes.getData(), static_cast<unsigned>(bytes.getSize()));
    explain(in);
}

void changeAndUndo()
{
    const tarn::ref_ptr<Style> style(new Style("Arial", 16));
    ElementPtr section = make<Section>("Section", style);
    Element::add(section, make<Paragraph>("Paragraph", style));
    tarn::UndoHistory<Element> history;
    history.note(section);
    const tarn::ObjectGraph before(section);
    std::cout << "\nThe same for people to read:\n" << before.getJSON() << "Circles: " << before.getCircles().size();

    section->set("Chapter", tarn::deepCopy(style));
    history.note(section);
    std::cout << "\nAfter a change:\n";
    for (const std::string& difference : tarn::ObjectGraph(section).getDifferences(before))
        std::cout << "  " << difference << '\n';
    section = history.undo();
    std::cout << "Undone it is as before: " << std::boolalpha << (tarn::ObjectGraph(section) == before) << '\n';
}

int saveAndHaveItRead(const char* program)
{
    const char* const folder = std::getenv("TEMP");
    const std::string file =
        std::string(folder ? folder : ".") + "\\objectgraph." + std::to_string(_getpid()) + ".archive";
    const ElementPtr document = makeDocument();
    show("Saved:", document);
    save(document, file);

    const std::string argument = '"' + file + '"';
    const auto result = _spawnl(_P_WAIT, program, "objectgraph", "--read", argument.c_str(), nullptr);
    std::remove(file.c_str());
    if (result != 0)
        throw std::runtime_error("The second process could not read the document");
    explainSmallArchive();
    std::fflush(stdout);
    changeAndUndo();
    return 0;
}

int readAndShow(const char* file)
{
    const ElementPtr document = load(file);
    show("\nRead by another process:", document);
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc == 3 && std::strcmp(argv[1], "--read") == 0)
            return readAndShow(argv[2]);
        return saveAndHaveItRead(argv[0]);
    } catch (const std::exception& e) {
        const auto failure = tarn::ReadingFailure::of(e);
        std::cerr << "objectgraph: " << (failure ? failure->getText() : e.what()) << '\n';
        return 1;
    }
}
