#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <concepts>

namespace tarn {
/// A loaded program or DLL: its procedures, resources, messages and file name.
///
/// It frees what it loaded itself (load) and only borrows what it looked up (query) or was given. Can be moved
/// and not copied. Failures throw WindowsError, also out of the destructor.
class TARN_API WindowsModule : private boost::noncopyable {
public:
    /// Borrows the module.
    WindowsModule(HINSTANCE module) : module_(module) {}
    /// How a constructor gets at the module, made of its second argument: `true` loads it, `false` looks it
    /// up among those loaded, and a number is the flags of `LoadLibraryEx`. Of type int are the platform's
    /// constants for these; 0 and 1 do not compile as such, because they may be FALSE and TRUE as well: write
    /// `false`, `true`, `0ul` or `1ul`.
    class Access {
    public:
        /// See above.
        ///@{
        template <std::same_as<bool> Bool> Access(Bool load) : load_(load), withFlags_(false), flags_(0) {}
        template <std::same_as<unsigned long> Flags> Access(Flags flags) : load_(true), withFlags_(true), flags_(flags)
        {
        }
        template <std::same_as<int> Flags>
        consteval Access(Flags flags) : load_(true), withFlags_(true), flags_(static_cast<unsigned long>(flags))
        {
            if (flags == FALSE || flags == TRUE)
                writeBoolOrUnsignedLong();
        }
        ///@}

    private:
        friend class WindowsModule;
        static void writeBoolOrUnsignedLong(); // Exists nowhere: its name is for the compiler's message.

        bool load_;
        bool withFlags_;
        unsigned long flags_;
    };

    /// Load the module or look it up; throw as load() and query() do.
    ///@{
    WindowsModule(const char* name, Access access);
    WindowsModule(const wchar_t* name, Access access);
    ///@}
    /// The source then has no module.
    WindowsModule(WindowsModule&& other) noexcept;
    /// Closes the module held so far; of a failure of that the debugger alone hears.
    WindowsModule& operator=(WindowsModule&& other) noexcept;
    ~WindowsModule() noexcept(false);

    /// Null after close(). Lent, not given.
    HINSTANCE getHandle() const { return module_; }
    /// Whether it was loaded by this object, which frees it.
    bool isOwner() const { return owns_; }

    /// The module held before is let go of first. Throws "Can't load library "NAME"".
    ///@{
    void load(const char* name);
    void load(const wchar_t* name);
    ///@}
    /// With the flags of `LoadLibraryEx`. Throws "Can't load library "NAME" with flags 0xFLAGS".
    ///@{
    void load(const char* name, unsigned long flags);
    void load(const wchar_t* name, unsigned long flags);
    /// Not flags, nor the constructor's `load`.
    void load(const char* name, std::same_as<bool> auto) = delete;
    void load(const wchar_t* name, std::same_as<bool> auto) = delete;
    ///@}
    /// Throws "Can't get module handle for "NAME"".
    ///@{
    void query(const char* name);
    void query(const wchar_t* name);
    ///@}
    /// Throws "Can't free library".
    void close();
    /// Gives the module to the caller, who has to free what was loaded; null when there was none.
    HINSTANCE detach() noexcept;

    /// No more thread notifications for the module. Throws "Can't disable thread calls for library".
    void disableThreadCalls();

    /// `name` may be an ordinal (`MAKEINTRESOURCEA`). Null when it is missing and may be. Throws "Can't get proc
    /// address for "NAME"".
    FARPROC getProcAddress(const char* name, bool mayBeMissing) const;

    /// Throws "Error in retrieving module file name".
    ///@{
    BasicString<char> getFilenameA() const;
    BasicString<wchar_t> getFilenameW() const;
    ///@}

    /// Resource `id` of the type "BINARY", whatever `type` says: that name only appears in the failure
    /// "Unable to find resource with type TYPE and id ID". Store data as "BINARY" resources. An `id` that is
    /// no number of 16 bits fails with `ERROR_INVALID_PARAMETER`.
    HRSRC findResource(const char* type, int id) const;
    /// Valid as long as the module is loaded. Throws "Can't load resource", "Can't lock resource".
    void* getResourcePointer(HRSRC resource) const;
    /// In bytes. Throws "Can't retrieve resource size".
    unsigned int getResourceSize(HRSRC resource) const;

    /// The text of message `id` in the module's message table, with its inserts as they stand and its
    /// line break. `language` 0 takes the system's order of languages.
    /// Throws "Can't format message id ID with languag LANGUAGE" (sic), both in hexadecimal.
    ///@{
    BasicString<char> getMessageA(unsigned long id, unsigned long language) const;
    BasicString<wchar_t> getMessageW(unsigned long id, unsigned long language) const;
    ///@}

private:
    HMODULE module_ = nullptr;
    bool owns_ = false;
};
} // namespace tarn
