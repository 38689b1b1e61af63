#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/RegistryValue.h>

#include <functional>
#include <vector>

namespace tarn {
/// Changes of files, folders and the registry of which all are made, or none: for installing, updating, and taking away
/// again.
///
///     ChangeList changes;
///     changes.createFolder(L"C:\\Example");
///     changes.writeFile(L"C:\\Example\\example.ini", "[Example]\r\n", 11);
///     changes.setValue(HKEY_CURRENT_USER, L"Software\\Example", L"Path", RegistryValue<wchar_t>(L"C:\\Example"));
///     changes.apply();
///
/// The steps are noted first, so that getSteps() can tell what would be done. When one of them fails, those before it
/// are undone, the last one first, and the failure is thrown: all is as it was. What is replaced or removed lies under
/// another name meanwhile ("NAME.before"), with its permissions, and is there still when the machine stops half-way.
class TARN_API ChangeList {
public:
    /// `view` is `KEY_WOW64_64KEY` or `KEY_WOW64_32KEY`, for all steps in the registry, or 0 for the program's own.
    explicit ChangeList(unsigned long view = 0) : view_(view) {}

    /// Steps in the registry. `root` is a predefined key, or one that is open as long as the list. Keys that are
    /// missing are made; values and keys that are to be deleted may be missing. deleteKey() deletes with all that is
    /// below, and undoing that makes a key again without its permissions; `key` must not lead through a link.
    ///@{
    void createKey(HKEY root, const wchar_t* key);
    void setValue(HKEY root, const wchar_t* key, const wchar_t* name, const RegistryValue<wchar_t>& value);
    void deleteValue(HKEY root, const wchar_t* key, const wchar_t* name);
    void deleteKey(HKEY root, const wchar_t* key);
    ///@}
    /// Steps with files and folders, of which a path names either. createFolder() makes those above it, too. The data
    /// of writeFile() are copied; a file that was there is replaced, also a read-only one. copy() and move() fail where
    /// the target is there already; what remove() is to remove may be missing.
    ///@{
    void createFolder(const wchar_t* path);
    void writeFile(const wchar_t* path, const void* data, std::size_t size);
    void copy(const wchar_t* from, const wchar_t* to);
    void move(const wchar_t* from, const wchar_t* to);
    void remove(const wchar_t* path);
    ///@}
    /// A step of your own. One whose `apply` throws must have changed nothing; `undo` is called when a later one fails.
    void add(const wchar_t* description, std::function<void()> apply, std::function<void()> undo);

    /// What apply() is going to do, a sentence for each step. Changes nothing.
    const std::vector<BasicString<wchar_t>>& getSteps() const { return descriptions_; }
    /// Does it. Throws what the first failing step does, when all before it is undone. May be called again.
    void apply();
    /// What could not be undone in the last apply(), as texts of errors; empty when all is as it was. Without memory a
    /// text may be empty.
    const std::vector<BasicString<wchar_t>>& getNotUndone() const { return notUndone_; }

private:
    class Run;

    void add(const BasicString<wchar_t>& description, std::function<void(Run&)> step);
    void noteNotUndone() noexcept;

    const unsigned long view_;
    std::vector<BasicString<wchar_t>> descriptions_;
    std::vector<std::function<void(Run&)>> steps_;
    std::vector<BasicString<wchar_t>> notUndone_;
};
} // namespace tarn
