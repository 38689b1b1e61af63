#include <tarn/ChangeList.h>

#include <tarn/AtomicFile.h>
#include <tarn/Exception.h>
#include <tarn/FileSystem.h>
#include <tarn/WindowsFile.h>

#include "../files/LongPath.h"
#include "../foundation/Check.h"
#include "../foundation/NumericCast.h"
#include "../foundation/Quoted.h"
#include "RegistryChanges.h"

#include <memory>
#include <optional>
#include <string>

namespace tarn {
namespace {
using Path = BasicString<wchar_t>;

/// "NAME.before", or with a number behind where that is taken.
template <class IsTaken> Path freeNameFor(const Path& name, IsTaken isTaken)
{
    Path free = name + L".before";
    for (unsigned number = 2; isTaken(free); ++number)
        free = name + L".before" + std::to_wstring(number);
    return free;
}

/// Nothing only when there certainly is none.
std::optional<DWORD> attributesOf(const Path& path)
{
    const DWORD attributes = GetFileAttributesW(longPath(path.c_str()).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES)
        return attributes;
    if (GetLastError() != ERROR_FILE_NOT_FOUND && GetLastError() != ERROR_PATH_NOT_FOUND)
        throwLastError([&] { return "Can't get attributes of " + quoted(path.c_str()); });
    return std::nullopt;
}

bool isThere(const Path& path) { return attributesOf(path).has_value(); }

bool isThere(const RegistryKey& parent, const Path& key)
{
    RegistryKey opened;
    return opened.open(parent, key.c_str(), KEY_READ);
}

Path shown(HKEY root, const Path& key)
{
    static constexpr const wchar_t* names[] = {L"HKEY_CLASSES_ROOT", L"HKEY_CURRENT_USER", L"HKEY_LOCAL_MACHINE",
                                               L"HKEY_USERS"};
    const auto number = reinterpret_cast<ULONG_PTR>(root) & 0x7FFFFFFF;
    return L'"' + (number < std::size(names) ? names[number] + (L'\\' + key) : key) + L'"';
}
} // namespace

/// One apply().
class ChangeList::Run : public RegistryChanges {
public:
    explicit Run(unsigned long view) : view_(view) {}

    RegistryKey open(HKEY root) const { return RegistryKey(root, L"", KEY_READ | view_); }

    /// For what is to be done when all has gone well; who fails then leaves something lying about.
    void afterwards(std::function<void()> work) { afterwards_.push_back(std::move(work)); }
    void finish() noexcept
    {
        keep();
        for (const auto& work : afterwards_)
            closeQuietly(work);
    }

    /// Puts a file or folder under another name until all has gone well.
    void putAside(const Path& path)
    {
        const Path aside = freeNameFor(path, [](const Path& name) { return isThere(name); });
        note([=] {
            if (isThere(aside))
                FileSystem::move(aside.c_str(), path.c_str());
        });
        afterwards([=] { FileSystem::remove(aside.c_str()); });
        FileSystem::move(path.c_str(), aside.c_str());
    }

    /// What is going to be made at a place where nothing is.
    void removeAtEnd(const Path& path)
    {
        if (!isThere(path))
            note([=] { FileSystem::remove(path.c_str()); });
    }

    void createFolder(const Path& path)
    {
        if (isThere(path))
            return;
        if (const Path parent = path.getDirectory(); !parent.empty() && parent.size() < path.size())
            createFolder(parent);
        note([=] { // What others have put into it stays.
            if (isThere(path))
                ensure(RemoveDirectoryW(longPath(path.c_str()).c_str()),
                       [&] { return "Can't remove " + quoted(path.c_str()); });
        });
        FileSystem::createFolder(path.c_str());
    }

    void move(const Path& from, const Path& to)
    {
        if (isThere(from) && !isThere(to))
            note([=] {
                if (!isThere(from))
                    FileSystem::move(to.c_str(), from.c_str());
            });
        if (MoveFileExW(longPath(from.c_str()).c_str(), longPath(to.c_str()).c_str(), 0))
            return;
        if (GetLastError() != ERROR_NOT_SAME_DEVICE)
            throwLastError([&] { return "Can't move " + quoted(from.c_str()); });
        removeAtEnd(to); // On another drive.
        FileSystem::copy(from.c_str(), to.c_str());
        putAside(from);
    }

private:
    const unsigned long view_;
    std::vector<std::function<void()>> afterwards_;
};

void ChangeList::add(const BasicString<wchar_t>& description, std::function<void(Run&)> step)
{
    steps_.reserve(steps_.size() + 1);
    descriptions_.push_back(description);
    steps_.push_back(std::move(step));
}

void ChangeList::add(const wchar_t* description, std::function<void()> apply, std::function<void()> undo)
{
    add(BasicString<wchar_t>(description), [apply = std::move(apply), undo = std::move(undo)](Run& run) {
        const auto done = std::make_shared<bool>(false);
        run.note([=] {
            if (*done)
                undo();
        });
        apply();
        *done = true;
    });
}

void ChangeList::createKey(HKEY root, const wchar_t* key)
{
    add(L"Make key " + shown(root, key), [root, key = Path(key)](Run& run) { run.createKey(run.open(root), key); });
}

void ChangeList::setValue(HKEY root, const wchar_t* key, const wchar_t* name, const RegistryValue<wchar_t>& value)
{
    add(L"Set value \"" + Path(name) + L"\" of key " + shown(root, key),
        [root, key = Path(key), name = Path(name), value](Run& run) {
            run.setValue(run.createKey(run.open(root), key), name.c_str(), value);
        });
}

void ChangeList::deleteValue(HKEY root, const wchar_t* key, const wchar_t* name)
{
    add(L"Delete value \"" + Path(name) + L"\" of key " + shown(root, key),
        [root, key = Path(key), name = Path(name)](Run& run) {
            RegistryKey opened;
            if (opened.open(run.open(root), key.c_str(), KEY_READ | KEY_WRITE))
                run.deleteValue(opened, name.c_str());
        });
}

void ChangeList::deleteKey(HKEY root, const wchar_t* key)
{
    add(L"Delete key " + shown(root, key), [root, key = Path(key)](Run& run) {
        const RegistryKey parent = run.open(root);
        RegistryKey former;
        if (!former.open(parent, key.c_str(), KEY_READ))
            return;
        const Path aside = freeNameFor(key, [&](const Path& name) { return isThere(parent, name); });
        run.note([=] {
            RegistryKey saved;
            if (!saved.open(parent, aside.c_str(), KEY_READ))
                return;
            RegistryKey::createOwned(parent, key.c_str(), KEY_ALL_ACCESS).AddContentFrom(saved);
            parent.deleteKeyRecursive(aside.c_str());
        });
        run.afterwards([=] { parent.deleteKeyRecursive(aside.c_str()); });
        RegistryKey::createOwned(parent, aside.c_str(), KEY_ALL_ACCESS).AddContentFrom(former);
        former.close();
        parent.deleteKeyRecursive(key.c_str());
    });
}

void ChangeList::createFolder(const wchar_t* path)
{
    const Path full = WindowsFile::getFullPath(path);
    add(L"Make folder \"" + full + L'"', [full](Run& run) { run.createFolder(full); });
}

void ChangeList::writeFile(const wchar_t* path, const void* data, std::size_t size)
{
    const Path full = WindowsFile::getFullPath(path);
    add(L"Write file \"" + full + L"\", " + std::to_wstring(size) + L" bytes",
        [full, content = std::string(static_cast<const char*>(data), size)](Run& run) {
            if (!(attributesOf(full).value_or(FILE_ATTRIBUTE_DIRECTORY) & FILE_ATTRIBUTE_DIRECTORY))
                run.putAside(full);
            run.removeAtEnd(full);
            AtomicFile::save(full.c_str(), content.data(), numericCast<unsigned>(content.size()));
        });
}

void ChangeList::copy(const wchar_t* from, const wchar_t* to)
{
    const Path source = WindowsFile::getFullPath(from), target = WindowsFile::getFullPath(to);
    add(L"Copy \"" + source + L"\" to \"" + target + L'"', [=](Run& run) {
        run.removeAtEnd(target);
        FileSystem::copy(source.c_str(), target.c_str());
    });
}

void ChangeList::move(const wchar_t* from, const wchar_t* to)
{
    const Path source = WindowsFile::getFullPath(from), target = WindowsFile::getFullPath(to);
    add(L"Move \"" + source + L"\" to \"" + target + L'"', [=](Run& run) { run.move(source, target); });
}

void ChangeList::remove(const wchar_t* path)
{
    const Path full = WindowsFile::getFullPath(path);
    add(L"Remove \"" + full + L'"', [full](Run& run) {
        if (isThere(full))
            run.putAside(full);
    });
}

void ChangeList::noteNotUndone() noexcept
{
    try {
        try {
            throw;
        } catch (const std::exception& error) {
            notUndone_.push_back(whatW(error));
        } catch (...) { // Of a step of the caller's.
            notUndone_.push_back(L"No std::exception");
        }
    } catch (const std::bad_alloc&) {
        if (notUndone_.empty())
            notUndone_.emplace_back();
    }
}

void ChangeList::apply()
{
    notUndone_.clear();
    notUndone_.reserve(1); // There is always room to say that something was not undone.
    Run run(view_);
    try {
        for (const auto& step : steps_)
            step(run);
    } catch (...) {
        run.goBack([this]() noexcept { noteNotUndone(); });
        throw;
    }
    run.finish();
}
} // namespace tarn
