// Lists the page headers in a capture of a teletext service: number, sub-code, control bits and text,
// with single-bit errors corrected and worse ones reported.
//
//     teletext-header [FILE]
//
// FILE holds packets of 42 bytes one after the other; without it the capture beside the program is read.

#include "PageHeader.h"

#include <tarn/WindowsModule.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {
std::filesystem::path shippedCapture()
{
    return tarn::WindowsModule(GetModuleHandleW(nullptr)).getFilenameW().getDirectory() + L"\\capture.t42";
}

/// The names of the control bits that are set. C12 to C14 are one number, the national character set.
std::string controlNames(const PageHeader& header)
{
    static constexpr const char* names[] = {"erase",  "newsflash",       "subtitle",        "suppress-header",
                                            "update", "out-of-sequence", "inhibit-display", "serial"};
    std::string text;
    for (unsigned c = 4; c <= 11; ++c) {
        if (header.control[c]) {
            text += ' ';
            text += names[c - 4];
        }
    }
    if (const int set = header.control[12] << 2 | header.control[13] << 1 | int(header.control[14])) {
        text += " national-set-";
        text += std::to_string(set);
    }
    return text;
}

void print(unsigned number, const DecodedPacket& packet)
{
    using Kind = DecodedPacket::Kind;
    if (packet.kind == Kind::other)
        return;
    std::printf("%3u  ", number);
    if (packet.kind == Kind::damaged) {
        std::printf("damaged beyond repair in byte");
        for (const unsigned position : packet.damagedBytes)
            std::printf(" %u", position);
        std::printf("\n");
        return;
    }
    const PageHeader& header = packet.header;
    std::printf("%X%02X/%04X  |%s|", header.magazine, header.page, header.subcode, header.text.c_str());
    if (packet.correctedBits)
        std::printf("  %u corrected", packet.correctedBits);
    std::printf(" %s\n", controlNames(header).c_str());
}

void list(const std::filesystem::path& file)
{
    const std::string name(tarn::w2a(file.c_str(), CP_ACP).c_str());
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw std::runtime_error("can't open " + name);
    unsigned number = 0, counts[3] = {};
    unsigned char packet[packetSize];
    while (in.read(reinterpret_cast<char*>(packet), packetSize)) {
        const DecodedPacket decoded = decodePacket(packet);
        ++counts[static_cast<unsigned>(decoded.kind)];
        print(++number, decoded);
    }
    std::printf("%u packets: %u headers, %u others, %u damaged\n", number, counts[0], counts[1], counts[2]);
    if (in.gcount() != 0)
        throw std::runtime_error(name + " ends within a packet");
}
} // namespace

int wmain(int argc, wchar_t** argv) // Wide, for files with any name.
{
    try {
        list(argc > 1 ? std::filesystem::path(argv[1]) : shippedCapture());
    } catch (const std::exception& e) {
        std::fprintf(stderr, "teletext-header: %s\n", e.what());
        return 1;
    }
    return 0;
}
