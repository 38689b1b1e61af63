#pragma once

#include <tarn/Array.h>
#include <tarn/Stream.h>

#include "CopyPiece.h"

#include <concepts>
#include <cstring>

// The data of an object with a version. They are told from what follows by being written in parts: a word, and what it
// announces.

namespace tarn {
/// Words in front of parts. Others are the number of bytes that follow.
enum PartWord : unsigned int {
    endOfBody = 0,
    objectPart = 0x80000000,   ///< The key, the name and the data of an object follow.
    referencePart = 0x80000001 ///< The key of an object follows.
};
/// In the upper half of the length of a class's name: a version and data in parts follow the name. No name is as long
/// as this number says, so that the data of others are what they were.
constexpr unsigned int versionMark = 0xC7A50000;
constexpr unsigned int versionMask = 0xFFFF0000;

/// Writes bodies, gathered in memory until they are long or the outermost one ends.
class BodyWriter {
public:
    /// Whether the object that is being written has its data in parts. One without a version inside of another has not.
    bool isInParts() const { return inParts_; }

    void write(OutputStream& out, const void* data, unsigned int size);
    /// Words by themselves, between parts.
    template <std::same_as<unsigned int>... Word> void putWords(Word... words)
    {
        endPart();
        const unsigned int all[] = {words...};
        std::memcpy(append(sizeof all), all, sizeof all);
    }

    /// Stands for an object while it is written: how its data are written, and what comes after it goes on as before.
    class Object {
    public:
        /// Keeps in `isOff` whether bytes can go to the stream itself.
        Object(BodyWriter& writer, bool& isOff) : writer_(writer), isOff_(isOff), outer_(writer.inParts_)
        {
            writer_.inParts_ = false;
        }
        Object(const Object&) = delete;
        Object& operator=(const Object&) = delete;
        ~Object();
        void beginBody();
        /// Behind the outermost body all is passed on.
        void endBody(OutputStream& out);

    private:
        BodyWriter& writer_;
        bool& isOff_;
        bool outer_;
        bool hasBody_ = false;
    };

private:
    char* append(unsigned int size);
    void endPart();
    void pass(OutputStream& out);

    static constexpr unsigned int none = ~0u;

    Array<char> pending_;
    unsigned int used_ = 0;
    unsigned int part_ = none; // Where the word of the part lies that is being written.
    unsigned int depth_ = 0;   // Of bodies inside of each other.
    bool inParts_ = false;
};

/// Reads what stands in an object's data.
class BodyReader {
public:
    /// How the data of the object that is being read are to be had. They are as many bytes as the object likes, parts,
    /// or zeros, which take it apart.
    struct State {
        enum Mode : unsigned char { plain, parts, zeros } mode = plain;
        bool hasWord = false;
        unsigned int word = 0; // In front of the next part, when that has been read.
        unsigned int left = 0; // Bytes of the part, or zeros.
        unsigned int version = 0;
    };

    /// What of the parts or zeros there is.
    unsigned int read(InputStream& in, void* buffer, unsigned int size)
    {
        if (state.mode != State::parts)
            return readZeros(buffer, size);
        if (size > state.left || position_ == filled_)
            return readParts(in, buffer, size);
        takeAhead(static_cast<char*>(buffer), size);
        return size;
    }
    /// Whether the object has read all of its data.
    bool isAtEnd(InputStream& in) { return state.left == 0 && nextWord(in) == endOfBody; }
    /// What comes next is an object's data in parts.
    void beginBody(unsigned int version, unsigned int firstWord)
    {
        state = {.mode = State::parts, .hasWord = true, .word = firstWord, .version = version};
    }
    /// The word in front of the next part. Throws EndOfFile.
    unsigned int nextWord(InputStream& in)
    {
        if (!state.hasWord) {
            readWords(in, &state.word, 1);
            state.hasWord = true;
        }
        return state.word;
    }
    /// Behind the word of a reference: its key. What comes next has a word, too, which is read along.
    unsigned int takeKey(InputStream& in)
    {
        unsigned int words[2];
        readWords(in, words, 2);
        state.word = words[1];
        state.hasWord = true;
        return words[0];
    }
    /// Behind the word of an object: its key, and the length of its name.
    void readHead(InputStream& in) { readWords(in, head, 2); }
    unsigned int takeWord(InputStream& in)
    {
        const unsigned int word = nextWord(in);
        state.hasWord = false;
        return word;
    }

    State state;
    unsigned int head[2] = {};

private:
    static void readWords(InputStream& in, unsigned int* words, unsigned int count);
    unsigned int readParts(InputStream& in, void* buffer, unsigned int size);
    unsigned int readZeros(void* buffer, unsigned int size);
    bool openPart(InputStream& in);
    // Of a part that was read whole.
    void takeAhead(char* to, unsigned int count)
    {
        copyPiece(to, ahead_ + position_, count);
        position_ += count;
        state.left -= count;
    }

    // A short part is read whole, with the word behind it: nobody else has use for these bytes.
    char ahead_[260];
    unsigned int position_ = 0;
    unsigned int filled_ = 0;
};
} // namespace tarn
