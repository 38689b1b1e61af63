#pragma once

#include <tarn/Archive.h>
#include <tarn/Export.h>
#include <tarn/MemoryStream.h>
#include <tarn/Serializable.h>
#include <tarn/ref_ptr.h>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace tarn {
/// What hangs on an object, as its serialize() and those of the objects that it refers to tell it: to compare, to look
/// at, and to test with.
///
///     const ObjectGraph before(document), after(changed);
///     for (const std::string& difference : after.getDifferences(before))
///         log.info(difference.c_str());
///
/// A value, which keeps none of the objects. They are numbered from 1 in the order in which an archive would write
/// them.
class TARN_API ObjectGraph {
public:
    /// Throws what serialize() throws, and `std::bad_typeid` for an empty pointer.
    explicit ObjectGraph(const ref_ptr<Serializable>& root);

    /// The same classes, data and references: the addresses of the objects do not count.
    bool operator==(const ObjectGraph&) const = default;
    /// A sentence for each value that differs, in UTF-8, such as `Object 2 (struct Artist), value 1: "Terns", not
    /// "Gulls"`; empty when the graphs are equal.
    std::vector<std::string> getDifferences(const ObjectGraph& other) const;

    /// The circles that keep themselves alive, each from an object on, such as `Object 1 (struct Node) holds object 2
    /// (struct Node), which holds object 1`. Where circles cross each other not each is told, but at least one as long
    /// as there are any. A weak_ref is in none.
    std::vector<std::string> getCircles() const;

    /// For people and tests, in UTF-8, with a line for each object, `{"class": "struct Album", "data": ["High Water",
    /// 2004,
    /// {"object": 2}]}` for instance; all of them are an array named "objects".
    ///
    /// Data have no types. So a text is what has its length in front; pieces of 1, 2, 4 and 8 bytes are whole numbers
    /// (those of 8 that would be beyond 2^53 are taken for a `double`), and all else is hexadecimal.
    std::string getJSON() const;

private:
    class Recorder;
    class CircleFinder;
    enum Kind { bytes, held, weak };
    struct Piece {
        bool operator==(const Piece&) const = default;
        Kind kind = bytes;
        std::string data;
        std::size_t object = 0;
    };
    struct Object {
        bool operator==(const Object&) const = default;
        std::string className;
        std::vector<Piece> pieces;
    };

    static std::vector<std::string> valuesOf(const Object& object);
    std::string nameOf(const char* noun, std::size_t object) const;

    std::vector<Object> objects_;
};

namespace detail {
/// An object and what hangs on it, as an archive writes it.
class TARN_API ObjectSnapshot {
public:
    explicit ObjectSnapshot(const ref_ptr<Serializable>& root);
    template <class T> ref_ptr<T> load() const
    {
        MemoryInputStream in(data_.getData(), static_cast<unsigned>(data_.getSize()));
        MemoryOutputStream nothing;
        return Archive(in, nothing).load<T>();
    }

private:
    mutable MemoryOutputStream data_; // Its position is no part of it.
};
} // namespace detail

/// A copy of an object with all that hangs on it, by way of an archive: shared objects are shared in the copy, circles
/// are circles. Throws as writing and reading do.
template <class T> ref_ptr<T> deepCopy(const ref_ptr<T>& object) { return detail::ObjectSnapshot(object).load<T>(); }

/// Undo and redo for a document of serializable objects: keeps a copy of each state.
///
///     history.note(document);         // At the beginning and after each change.
///     if (history.canUndo())
///         document = history.undo();  // Other objects, with the former data.
///
/// Each state takes as much memory as the document in an archive.
template <class T> class UndoHistory {
public:
    /// Keeps up to so many states, the present one included; the oldest goes first.
    explicit UndoHistory(std::size_t most = 100) : most_(std::max<std::size_t>(most, 1)) {}

    /// The state to which undo() leads back later. What was undone cannot be redone from here on.
    void note(const ref_ptr<T>& document)
    {
        states_.emplace_back(document);
        if (present_ + 2 < states_.size())
            states_.erase(states_.begin() + static_cast<std::ptrdiff_t>(present_ + 1), states_.end() - 1);
        if (states_.size() > most_)
            states_.pop_front();
        present_ = states_.size() - 1;
    }
    /// Whether there is a state before or behind the present one.
    ///@{
    bool canUndo() const { return present_ > 0; }
    bool canRedo() const { return present_ + 1 < states_.size(); }
    ///@}
    /// The document in the state before, or again in the one behind; empty when there is none.
    ///@{
    ref_ptr<T> undo() { return canUndo() ? goTo(present_ - 1) : ref_ptr<T>(); }
    ref_ptr<T> redo() { return canRedo() ? goTo(present_ + 1) : ref_ptr<T>(); }
    ///@}

private:
    ref_ptr<T> goTo(std::size_t state)
    {
        ref_ptr<T> document = states_[state].template load<T>();
        present_ = state;
        return document;
    }

    std::size_t most_;
    std::deque<detail::ObjectSnapshot> states_;
    std::size_t present_ = 0;
};
} // namespace tarn
