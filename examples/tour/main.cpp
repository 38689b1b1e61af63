// A first look at the library: each section does something real with one part of it and prints what it
// got. Start it without arguments, or name sections by a word of their title.

#include "Tour.h"

#include <tarn/BasicString.h>

#include <algorithm>
#include <exception>
#include <iostream>
#include <vector>

namespace {
std::vector<const tour::Section*>& sections()
{
    static std::vector<const tour::Section*> all;
    return all;
}

bool isWanted(const tour::Section& section, int argc, char** argv)
{
    const tarn::BasicString<char> title = tarn::BasicString<char>(section.title).toLower();
    return argc < 2 || std::any_of(argv + 1, argv + argc, [&](const char* word) {
               return title.contains(tarn::BasicString<char>(word).toLower());
           });
}
} // namespace

tour::Section::Section(int sectionNumber, const char* sectionTitle, void (*sectionShow)())
    : number(sectionNumber), title(sectionTitle), show(sectionShow)
{
    sections().push_back(this);
}

int main(int argc, char** argv)
{
    std::ranges::sort(sections(), {}, &tour::Section::number);
    try {
        for (const tour::Section* section : sections()) {
            if (!isWanted(*section, argc, argv))
                continue;
            std::cout << "\n== " << section->title << " ==\n";
            section->show();
        }
    } catch (const std::exception& e) {
        std::cerr << "The tour ended early: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
