#include <tarn/ObjectGraph.h>

#include <tarn/BufferingStream.h>

#include "ArchiveTables.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>

namespace tarn {
class ObjectGraph::Recorder final : public GraphRecorder {
public:
    explicit Recorder(std::vector<Object>& objects) : objects_(objects) {}

    void write(const void* data, unsigned int size) override
    {
        add({bytes, std::string(static_cast<const char*>(data), size)});
    }
    void refer(unsigned int key) override { add({reference(), {}, known_.at(key)}); }
    void begin(unsigned int key, std::string className) override
    {
        const std::size_t number = objects_.size();
        add({reference(), {}, number});
        objects_.push_back({std::move(className), {}});
        open_.push_back(number);
        if (key != 0)
            known_[key] = number;
    }
    void end() override { open_.pop_back(); }
    void expectWeak() override { isWeak_ = true; }

private:
    // What stands in front of the first object is no part of any.
    void add(Piece piece)
    {
        if (!open_.empty())
            objects_[open_.back()].pieces.push_back(std::move(piece));
    }
    Kind reference() { return std::exchange(isWeak_, false) ? weak : held; }

    std::vector<Object>& objects_;
    std::vector<std::size_t> open_;
    std::map<unsigned int, std::size_t> known_;
    bool isWeak_ = false;
};

ObjectGraph::ObjectGraph(const ref_ptr<Serializable>& root)
{
    Recorder recorder(objects_);
    MemoryInputStream nothing;
    MemoryOutputStream unused;
    Archive archive(nothing, unused);
    archive.recordWith(recorder);
    archive.writeObject(root);
}

// ---- Values

namespace {
template <class T> T numberIn(const std::string& data)
{
    T number;
    std::memcpy(&number, data.data(), sizeof number);
    return number;
}

std::string textOf(double number)
{
    char text[32];
    return {text, std::to_chars(text, std::end(text), number).ptr};
}

std::string quotedText(const BasicString<wchar_t>& text)
{
    std::string result = "\"";
    for (const char c : w2a(text, CP_UTF8)) {
        if (c == '"' || c == '\\')
            result += '\\';
        if (static_cast<unsigned char>(c) >= ' ') {
            result += c;
        } else {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04x", c);
            result += code;
        }
    }
    return result + '"';
}

std::string valueOf(const std::string& data)
{
    constexpr std::int64_t exact = 1ll << 53;
    switch (data.size()) {
    case 1:
        return std::to_string(numberIn<unsigned char>(data));
    case 2:
        return std::to_string(numberIn<short>(data));
    case 4:
        return std::to_string(numberIn<int>(data));
    case 8:
        if (const auto number = numberIn<std::int64_t>(data); - exact <= number && number <= exact)
            return std::to_string(number);
        if (const auto number = numberIn<double>(data); std::isfinite(number))
            return textOf(number);
        break;
    default:
        break;
    }
    std::string digits;
    for (const char c : data) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned char>(c));
        digits += pair;
    }
    return "{\"bytes\": \"" + digits + "\"}";
}

/// Nothing when the characters are none that texts have.
template <class Ch> std::optional<BasicString<Ch>> textIn(const std::string& data)
{
    BasicString<Ch> text(data.size() / sizeof(Ch), Ch());
    std::memcpy(text.data(), data.data(), data.size());
    for (const Ch c : text)
        if (static_cast<std::make_unsigned_t<Ch>>(c) < ' ' && c != '\t' && c != '\n' && c != '\r')
            return std::nullopt;
    return text;
}

/// The text whose length stands at the end of the piece before.
std::optional<std::string> textBehind(const std::string& before, const std::string& data)
{
    if (before.size() < sizeof(unsigned))
        return std::nullopt;
    const auto length = numberIn<unsigned>(before.substr(before.size() - sizeof(unsigned)));
    if (data.size() == length) {
        if (const auto text = textIn<char>(data))
            return quotedText(a2w(*text, CP_ACP));
    } else if (data.size() == 2ull * length) {
        if (const auto text = textIn<wchar_t>(data))
            return quotedText(*text);
    }
    return std::nullopt;
}
} // namespace

std::vector<std::string> ObjectGraph::valuesOf(const Object& object)
{
    std::vector<std::string> values;
    const std::vector<Piece>& pieces = object.pieces;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Piece& piece = pieces[i];
        const bool hasNext = i + 1 < pieces.size() && pieces[i + 1].kind == bytes;
        if (piece.kind != bytes) {
            std::string reference = piece.kind == held ? "{\"object\": " : "{\"weak\": ";
            values.push_back(reference.append(std::to_string(piece.object + 1)).append("}"));
        } else if (const auto text = hasNext ? textBehind(piece.data, pieces[i + 1].data) : std::nullopt) {
            if (piece.data.size() > sizeof(unsigned)) // Numbers that were written with the length.
                values.push_back(valueOf(piece.data.substr(0, piece.data.size() - sizeof(unsigned))));
            values.push_back(*text);
            ++i;
        } else {
            values.push_back(valueOf(piece.data));
        }
    }
    return values;
}

std::string ObjectGraph::nameOf(const char* noun, std::size_t object) const
{
    std::string name = noun;
    name.append(" ").append(std::to_string(object + 1));
    return name.append(" (").append(objects_[object].className).append(")");
}

std::vector<std::string> ObjectGraph::getDifferences(const ObjectGraph& other) const
{
    std::vector<std::string> differences;
    const auto add = [&](const std::string& whose, const std::string& mine, const std::string& its) {
        if (mine != its)
            differences.push_back(whose + mine + ", not " + its);
    };
    for (std::size_t i = 0; i < std::min(objects_.size(), other.objects_.size()); ++i) {
        const Object &mine = objects_[i], &its = other.objects_[i];
        const std::string name = nameOf("Object", i);
        if (mine.className != its.className) {
            differences.push_back(name + " is no " + its.className);
            continue;
        }
        const auto myValues = valuesOf(mine), itsValues = valuesOf(its);
        for (std::size_t k = 0; k < std::min(myValues.size(), itsValues.size()); ++k)
            add(name + ", value " + std::to_string(k + 1) + ": ", myValues[k], itsValues[k]);
        add(name + ", number of values: ", std::to_string(myValues.size()), std::to_string(itsValues.size()));
    }
    add("Number of objects: ", std::to_string(objects_.size()), std::to_string(other.objects_.size()));
    if (differences.empty() && *this != other)
        differences.emplace_back("The data differ in bytes that are shown alike");
    return differences;
}

/// Each object is entered once; one that is referred to while it is on the path closes a circle.
class ObjectGraph::CircleFinder {
public:
    explicit CircleFinder(const ObjectGraph& graph) : graph_(graph), states_(graph.objects_.size(), unseen) {}

    std::vector<std::string> find()
    {
        for (std::size_t first = 0; first < states_.size(); ++first)
            if (states_[first] == unseen)
                for (enter(first); !path_.empty();)
                    goOn();
        return std::move(circles_);
    }

private:
    enum State { unseen, onPath, done };
    struct Step {
        std::size_t object, next = 0;
    };

    void enter(std::size_t object)
    {
        states_[object] = onPath;
        path_.push_back({object});
    }

    void goOn()
    {
        Step& step = path_.back();
        const std::vector<Piece>& pieces = graph_.objects_[step.object].pieces;
        if (step.next == pieces.size()) {
            states_[step.object] = done;
            path_.pop_back();
            return;
        }
        const Piece& piece = pieces[step.next++];
        if (piece.kind != held)
            return;
        if (states_[piece.object] == unseen)
            enter(piece.object);
        else if (states_[piece.object] == onPath)
            note(piece.object);
    }

    void note(std::size_t object)
    {
        auto step = path_.end();
        while ((--step)->object != object) {
        }
        std::string circle = graph_.nameOf("Object", object);
        const char* joint = " holds ";
        while (++step != path_.end()) {
            circle.append(joint).append(graph_.nameOf("object", step->object));
            joint = ", which holds ";
        }
        const bool isItself = path_.back().object == object;
        circle.append(joint).append(isItself ? "itself" : "object " + std::to_string(object + 1));
        circles_.push_back(circle);
    }

    const ObjectGraph& graph_;
    std::vector<State> states_;
    std::vector<Step> path_;
    std::vector<std::string> circles_;
};

std::vector<std::string> ObjectGraph::getCircles() const { return CircleFinder(*this).find(); }

std::string ObjectGraph::getJSON() const
{
    std::string all = "{\"objects\": [";
    const char* comma = "\n";
    for (const Object& object : objects_) {
        all.append(comma).append("{\"class\": ").append(quotedText(a2w(object.className, CP_ACP)));
        all.append(", \"data\": [");
        const char* between = "";
        for (const std::string& value : valuesOf(object)) {
            all.append(between).append(value);
            between = ", ";
        }
        all.append("]}");
        comma = ",\n";
    }
    return all.append("]}\n");
}

// ---- Copies

detail::ObjectSnapshot::ObjectSnapshot(const ref_ptr<Serializable>& root)
{
    MemoryInputStream nothing;
    BufferingOutputStream buffer(data_);
    Archive(nothing, buffer).writeObject(root);
    buffer.flush();
}
} // namespace tarn
