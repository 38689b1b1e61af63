#include "Explain.h"

#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>

namespace {
/// Reads an archive item by item, and prints each.
class Explainer {
public:
    explicit Explainer(tarn::MemoryInputStream& archive) : archive_(archive) {}

    void record()
    {
        const unsigned tag = word("");
        if (tag != 0) {
            say("a reference to the object with this key: the " + objects_[tag] + " above");
            return;
        }
        say("an object follows");
        const unsigned key = word("its key, by which references name it");
        const std::string name = text("the name of its class");
        objects_[key] = name;
        ++depth_;
        data(name);
        --depth_;
    }

private:
    void data(const std::string& className)
    {
        if (className == "class document::Style") {
            text("font");
            word("size");
            return;
        }
        text("text");
        record();
        if (flag("is there a parent?"))
            record();
        for (unsigned parts = word("number of parts"); parts > 0; --parts)
            record();
    }

    unsigned word(const std::string& meaning)
    {
        const unsigned value = archive_.readUInt32();
        show(&value, sizeof value);
        say(meaning);
        return value;
    }

    bool flag(const std::string& meaning)
    {
        unsigned char byte;
        archive_.readFully(&byte, 1);
        show(&byte, 1);
        say(meaning);
        return byte != 0;
    }

    std::string text(const std::string& meaning)
    {
        const unsigned length = word("length of " + meaning);
        std::string value(length, '\0');
        archive_.readFully(value.data(), length);
        show(value.data(), length);
        say(meaning + ": \"" + value + "\"");
        return value;
    }

    /// Eight bytes a line, the last of which is left open for what they mean.
    void show(const void* bytes, unsigned count)
    {
        std::string line;
        for (unsigned i = 0; i < count; ++i) {
            if (i != 0 && i % 8 == 0) {
                std::printf("  %s\n", line.c_str());
                line.clear();
            }
            char digits[4];
            std::snprintf(digits, sizeof digits, "%02X ", static_cast<const unsigned char*>(bytes)[i]);
            line += digits;
        }
        std::printf("  %-25s", line.c_str());
    }

    void say(const std::string& meaning)
    {
        if (!meaning.empty())
            std::printf("%*s%s\n", depth_ * 4, "", meaning.c_str());
    }

    tarn::MemoryInputStream& archive_;
    std::map<unsigned, std::string> objects_;
    int depth_ = 0;
};
} // namespace

void explain(tarn::MemoryInputStream& archive) { Explainer(archive).record(); }
