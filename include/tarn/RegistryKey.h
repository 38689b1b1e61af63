#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Windows.h>

#include <concepts>
#include <cstddef>
#include <list>
#include <optional>
#include <type_traits>
#include <vector>

namespace tarn {
template <class Ch> class RegistryValue;

namespace detail {
/// What converts to bool without a word, and would be taken for a flag.
template <class T>
concept NotFlag = !std::same_as<T, bool> && !std::same_as<T, int>;

/// A number as the registry stores it, in 32 or 64 bits.
template <std::integral T> constexpr auto widened(T number)
{
    return static_cast<std::conditional_t<sizeof(T) <= sizeof(unsigned long), unsigned long, unsigned long long>>(
        number);
}
} // namespace detail

/// An open key of the registry: reads, writes and walks what lies below it.
///
/// Closes the handle when it owns it; the predefined roots (`HKEY_CURRENT_USER`, ...) are passed as the
/// parent or wrapped with `owns` false. Names and texts come in both widths: the narrow members call the
/// platform's ANSI entry points, the wide ones its Unicode ones. Absence is a result only where a member
/// says so; every other failure throws WindowsError with the code of the call, and with an empty
/// description unless another is given here. One object is not changed from two threads at once.
class TARN_API RegistryKey {
public:
    template <class Ch> struct Info;
    template <class EntryType> class Snapshot;
    template <class Ch> struct KeyEntry;
    template <class Ch> struct ValueEntry;
    template <class Ch> class KeyEnumeration;
    template <class Ch> class ValueEnumeration;

    /// What getInfo fills in, to be combined with `|`.
    enum InfoFields : unsigned short {
        infoClassName = 0x001,
        infoSubkeyCount = 0x002,
        infoMaxSubkeyLength = 0x004,
        infoMaxClassLength = 0x008,
        infoValueCount = 0x010,
        infoMaxValueNameLength = 0x020,
        infoMaxValueDataSize = 0x040,
        infoLastWriteTime = 0x080,
        infoSecurityDescriptorSize = 0x100,
    };

    RegistryKey() = default;
    /// Wraps an open key.
    RegistryKey(HKEY key, bool owns) : owns_(owns), key_(key) {}
    /// A text or an access is no `owns`: to open a subkey give its name and the access.
    template <detail::NotFlag T> RegistryKey(HKEY key, T owns) = delete;
    /// Opens a key that has to exist. Throws "Registry key not found" when it does not.
    ///@{
    RegistryKey(HKEY parent, const char* subkey, unsigned long access);
    RegistryKey(HKEY parent, const wchar_t* subkey, unsigned long access);
    ///@}
    /// The same, and without a view in `access` in that of the parent, as open(), create() and createOwned() do.
    ///@{
    RegistryKey(const RegistryKey& parent, const char* subkey, unsigned long access)
        : RegistryKey(parent.key_, subkey, parent.inView(access))
    {
    }
    RegistryKey(const RegistryKey& parent, const wchar_t* subkey, unsigned long access)
        : RegistryKey(parent.key_, subkey, parent.inView(access))
    {
    }
    ///@}
    /// The copy of an owned key owns a handle of its own with the same access; the copy of a borrowed key
    /// borrows the same handle.
    RegistryKey(const RegistryKey& other);
    /// Takes the handle over as it is, owned or not.
    RegistryKey(RegistryKey&& other) noexcept;
    /// As the constructors of the same arguments. An owned key is closed; of a failure the debugger hears.
    ///@{
    RegistryKey& operator=(const RegistryKey& other);
    RegistryKey& operator=(RegistryKey&& other) noexcept;
    ///@}
    /// Does not report a failing close: call close() to hear of it.
    virtual ~RegistryKey();

    /// Closes an owned key, then opens another, which it owns; so `parent` must not be the key that this
    /// object owns. False when there is no such subkey. An open that fails leaves the object without key.
    ///@{
    bool open(HKEY parent, const char* subkey, unsigned long access);
    bool open(HKEY parent, const wchar_t* subkey, unsigned long access);
    bool open(const RegistryKey& parent, const char* subkey, unsigned long access)
    {
        return open(parent.key_, subkey, parent.inView(access));
    }
    bool open(const RegistryKey& parent, const wchar_t* subkey, unsigned long access)
    {
        return open(parent.key_, subkey, parent.inView(access));
    }
    ///@}

    /// Opens a subkey, or makes it when it is missing; the key is owned, so it closes itself. The long form has
    /// the arguments of `RegCreateKeyEx`; `className`, `security` and `disposition` may be null.
    ///@{
    static RegistryKey createOwned(HKEY parent, const char* subkey, unsigned long access);
    static RegistryKey createOwned(HKEY parent, const wchar_t* subkey, unsigned long access);
    static RegistryKey createOwned(const RegistryKey& parent, const char* subkey, unsigned long access)
    {
        return createOwned(parent.key_, subkey, parent.inView(access));
    }
    static RegistryKey createOwned(const RegistryKey& parent, const wchar_t* subkey, unsigned long access)
    {
        return createOwned(parent.key_, subkey, parent.inView(access));
    }
    static RegistryKey createOwned(HKEY parent, const char* subkey, const char* className, unsigned long options,
                                   unsigned long access, SECURITY_ATTRIBUTES* security, unsigned long* disposition);
    static RegistryKey createOwned(HKEY parent, const wchar_t* subkey, const wchar_t* className, unsigned long options,
                                   unsigned long access, SECURITY_ATTRIBUTES* security, unsigned long* disposition);
    ///@}

    /// As open, but makes the subkey when it is missing. The created key is not owned, so nothing closes
    /// it: use createOwned(), or hand it on with detach().
    ///@{
    void create(HKEY parent, const char* subkey, unsigned long access);
    void create(HKEY parent, const wchar_t* subkey, unsigned long access);
    void create(const RegistryKey& parent, const char* subkey, unsigned long access)
    {
        create(parent.key_, subkey, parent.inView(access));
    }
    void create(const RegistryKey& parent, const wchar_t* subkey, unsigned long access)
    {
        create(parent.key_, subkey, parent.inView(access));
    }
    ///@}
    /// With the arguments of `RegCreateKeyEx`; `className`, `security` and `disposition` may be null.
    ///@{
    void create(HKEY parent, const char* subkey, const char* className, unsigned long options, unsigned long access,
                SECURITY_ATTRIBUTES* security, unsigned long* disposition);
    void create(HKEY parent, const wchar_t* subkey, const wchar_t* className, unsigned long options,
                unsigned long access, SECURITY_ATTRIBUTES* security, unsigned long* disposition);
    ///@}

    /// Closes the key if it is owned. The handle stays readable, so isOpen() is still true: ask ownsKey(),
    /// or call detach() to forget the handle too. Does nothing the second time.
    void close();
    /// Closes an owned key first.
    void attach(HKEY key, bool owns);
    /// As the constructor.
    template <detail::NotFlag T> void attach(HKEY key, T owns) = delete;
    /// Hands the handle to the caller, open.
    HKEY detach();

    /// Lent, not given; null for none.
    ///@{
    HKEY getKey() const { return key_; }
    operator HKEY() const { return key_; }
    ///@}
    /// Whether the object closes the key.
    bool ownsKey() const { return owns_; }
    /// `KEY_WOW64_64KEY` or `KEY_WOW64_32KEY` if the access that the key was opened or created with says so,
    /// else 0. What opens and works on subkeys and whole trees stays in this view.
    unsigned long getView() const { return static_cast<unsigned long>(view_) << 8; }
    /// Whether there is a handle; it stays after close() until detach() or another key.
    ///@{
    bool isOpen() const { return key_ != nullptr; }
    bool isNull() const { return key_ == nullptr; }
    explicit operator bool() const { return isOpen(); }
    bool operator!() const { return isNull(); }
    ///@}

    /// Returns when the key's changes are on the disk.
    void flush() const;

    // Values. A null or empty name means the key's default value.

    /// Reads a `REG_DWORD`, `REG_DWORD_BIG_ENDIAN` or four-byte `REG_BINARY` value as its bytes lie, so a
    /// big-endian value is not swapped: swap it yourself when GetValueType() says that it is one. False,
    /// with `value` as it was, when there is no such value. Throws "Can't query DWORD registry value" (for
    /// longer data too), and std::runtime_error "Can't read DWORD value from registry with type other than
    /// REG_DWORD_LITTLE_ENDIAN, REG_DWORD_BIG_ENDIAN or REG_BINARY" or "Can't read DWORD from registry
    /// value with size != sizeof(DWORD)".
    ///@{
    bool getValue(const char* name, unsigned long& value) const;
    bool getValue(const wchar_t* name, unsigned long& value) const;
    ///@}
    /// The same, but a missing value is an error too: `ERROR_FILE_NOT_FOUND`.
    ///@{
    unsigned long getDWordValue(const char* name) const;
    unsigned long getDWordValue(const wchar_t* name) const;
    ///@}

    /// Reads a `REG_QWORD`, an eight-byte `REG_BINARY` or a `REG_DWORD` value, else as for 32 bits. Throws "Can't
    /// query QWORD registry value", and std::runtime_error "Can't read QWORD value from registry with type other than
    /// REG_QWORD, REG_DWORD or REG_BINARY" or "Can't read QWORD from registry value with size != sizeof(QWORD)".
    ///@{
    bool getValue(const char* name, unsigned long long& value) const;
    bool getValue(const wchar_t* name, unsigned long long& value) const;
    unsigned long long getQWordValue(const char* name) const;
    unsigned long long getQWordValue(const wchar_t* name) const;
    ///@}

    /// A `REG_SZ` or `REG_EXPAND_SZ` value up to its first zero or, stored without one, whole. Variables
    /// are not expanded: getExpandedStringValue() does that. Throws "Registry value not found", and "Wrong value type.
    /// Expected REG_SZ or REG_EXPAND_SZ" with `ERROR_UNSUPPORTED_TYPE`.
    ///@{
    BasicString<char> getStringValue(const char* name) const;
    BasicString<wchar_t> getStringValue(const wchar_t* name) const;
    ///@}

    /// The same, with the variables of a `REG_EXPAND_SZ` value replaced; one that the environment lacks stays as it
    /// is written.
    ///@{
    BasicString<char> getExpandedStringValue(const char* name) const;
    BasicString<wchar_t> getExpandedStringValue(const wchar_t* name) const;
    ///@}

    /// The strings of a `REG_MULTI_SZ` value, up to the first empty one; missing terminators at the end
    /// are no error. False, with `strings` as they were, when there is no such value. Throws "Wrong value
    /// type. Expected REG_MULTI_SZ" with `ERROR_UNSUPPORTED_TYPE`.
    ///@{
    bool getValue(const char* name, std::list<BasicString<char>>& strings) const;
    bool getValue(const wchar_t* name, std::list<BasicString<wchar_t>>& strings) const;
    ///@}

    /// What is said above, or nothing when there is no such value.
    ///@{
    std::optional<unsigned long> findDWordValue(const char* name) const { return findDWord(name); }
    std::optional<unsigned long> findDWordValue(const wchar_t* name) const { return findDWord(name); }
    std::optional<unsigned long long> findQWordValue(const char* name) const;
    std::optional<unsigned long long> findQWordValue(const wchar_t* name) const;
    std::optional<BasicString<char>> findStringValue(const char* name) const;
    std::optional<BasicString<wchar_t>> findStringValue(const wchar_t* name) const;
    std::optional<BasicString<char>> findExpandedStringValue(const char* name) const;
    std::optional<BasicString<wchar_t>> findExpandedStringValue(const wchar_t* name) const;
    std::optional<std::list<BasicString<char>>> findStringsValue(const char* name) const;
    std::optional<std::list<BasicString<wchar_t>>> findStringsValue(const wchar_t* name) const;
    ///@}
    /// What is said above, or the default when there is no such value; null is the empty text.
    ///@{
    unsigned long getDWordValue(const char* name, unsigned long defaultValue) const;
    unsigned long getDWordValue(const wchar_t* name, unsigned long defaultValue) const;
    unsigned long long getQWordValue(const char* name, unsigned long long defaultValue) const;
    unsigned long long getQWordValue(const wchar_t* name, unsigned long long defaultValue) const;
    BasicString<char> getStringValue(const char* name, const char* defaultText) const;
    BasicString<wchar_t> getStringValue(const wchar_t* name, const wchar_t* defaultText) const;
    BasicString<char> getExpandedStringValue(const char* name, const char* defaultText) const;
    BasicString<wchar_t> getExpandedStringValue(const wchar_t* name, const wchar_t* defaultText) const;
    ///@}

    /// The stored bytes. `size` says how large the buffer is and receives the size of the data, also when
    /// the buffer is too small (the error is then `ERROR_MORE_DATA`). A null `data` only asks for the size
    /// and the type. False when there is no such value.
    ///@{
    bool getValue(const char* name, unsigned char* data, unsigned long& size, unsigned long& type) const;
    bool getValue(const wchar_t* name, unsigned char* data, unsigned long& size, unsigned long& type) const;
    bool getValue(const char* name, unsigned char* data, unsigned long size) const;
    bool getValue(const wchar_t* name, unsigned char* data, unsigned long size) const;
    ///@}

    /// A value of any type and size. False, with `value` as it was, when there is no such value.
    ///@{
    bool getValue(const char* name, RegistryValue<char>& value) const;
    bool getValue(const wchar_t* name, RegistryValue<wchar_t>& value) const;
    ///@}

    /// In bytes, as this width reads the value.
    ///@{
    unsigned long getValueSize(const char* name) const;
    unsigned long getValueSize(const wchar_t* name) const;
    ///@}
    /// A `REG_...` code.
    ///@{
    unsigned long GetValueType(const char* name) const;
    unsigned long GetValueType(const wchar_t* name) const;
    ///@}
    /// Throws "Error in checking registry value existance" (sic).
    ///@{
    bool existsValue(const char* name) const;
    bool existsValue(const wchar_t* name) const;
    ///@}

    /// A `REG_DWORD`.
    ///@{
    void setValue(const char* name, unsigned long value) const;
    void setValue(const wchar_t* name, unsigned long value) const;
    ///@}
    /// A `REG_QWORD`.
    ///@{
    void setValue(const char* name, unsigned long long value) const;
    void setValue(const wchar_t* name, unsigned long long value) const;
    ///@}
    /// Any other number, as a `REG_DWORD` if its type has up to 32 bits. Without these a 0 could be a null text as
    /// well.
    ///@{
    template <std::integral T> void setValue(const char* name, T value) const
    {
        setValue(name, detail::widened(value));
    }
    template <std::integral T> void setValue(const wchar_t* name, T value) const
    {
        setValue(name, detail::widened(value));
    }
    ///@}
    /// A `REG_SZ`; null is the empty text.
    ///@{
    void setValue(const char* name, const char* text) const;
    void setValue(const wchar_t* name, const wchar_t* text) const;
    ///@}
    /// A `REG_EXPAND_SZ`, as getExpandedStringValue() reads it; null is the empty text.
    ///@{
    void setExpandableValue(const char* name, const char* text) const;
    void setExpandableValue(const wchar_t* name, const wchar_t* text) const;
    ///@}
    /// A `REG_MULTI_SZ`, which ends where an empty string stands.
    ///@{
    void setValue(const char* name, const std::list<BasicString<char>>& strings) const;
    void setValue(const wchar_t* name, const std::list<BasicString<wchar_t>>& strings) const;
    ///@}
    /// The bytes as they lie, under any type.
    ///@{
    void setValue(const char* name, const unsigned char* data, unsigned long sizeInBytes, unsigned long type) const;
    void setValue(const wchar_t* name, const unsigned char* data, unsigned long sizeInBytes, unsigned long type) const;
    ///@}
    /// What getValue() read, with its type.
    ///@{
    void setValue(const char* name, const RegistryValue<char>& value) const;
    void setValue(const wchar_t* name, const RegistryValue<wchar_t>& value) const;
    ///@}

    /// Throws "Can't delete registry value".
    ///@{
    void deleteValue(const char* name) const;
    void deleteValue(const wchar_t* name) const;
    ///@}
    /// Deletes one value after the other; a failure leaves the rest. Throws "Can't delete registry value".
    void deleteAllValues() const;

    // Subkeys. What a failing operation on a whole subtree has done by then stays done.

    /// False also for a key that may not be read.
    ///@{
    bool existsKey(const char* subkey) const;
    bool existsKey(const wchar_t* subkey) const;
    /// `KEY_WOW64_64KEY`, say.
    static bool existsKey(HKEY parent, const char* subkey, unsigned long view = 0);
    static bool existsKey(HKEY parent, const wchar_t* subkey, unsigned long view = 0);
    ///@}

    // None of the following follows a symbolic link that stands at or below a subkey: a link is deleted or copied
    // as a link, and what it leads to stays.

    /// Deletes a subkey that has no subkeys itself.
    ///@{
    void deleteKey(const char* subkey) const;
    void deleteKey(const wchar_t* subkey) const;
    ///@}
    /// Deletes a subkey with everything below it; an empty name is this key itself. Throws "Registry key not
    /// found" with `ERROR_FILE_NOT_FOUND` whatever the reason why it cannot be opened for all access.
    ///@{
    void deleteKeyRecursive(const char* subkey) const;
    void deleteKeyRecursive(const wchar_t* subkey) const;
    ///@}
    /// Deletes the empty keys in a subtree, leaves first, its root included. A key without subkeys is empty
    /// when it has no value, or a single one while its default value is missing or has no data. So a key
    /// whose only value has a name, as a link is one, is deleted with that value: give the keys that must
    /// survive a default value. Throws as deleteKeyRecursive.
    ///@{
    void cleanEmptyTree(const char* subkey) const;
    void cleanEmptyTree(const wchar_t* subkey) const;
    ///@}

    /// Copies the subkeys and values of `source` into this key, all types, with the class names of the
    /// keys that it makes, which are volatile in a volatile key. Values that exist are replaced, and so is a
    /// link by a key; all others stay. Access rights are not copied. The source is read whole before the
    /// first change, so either key may lie inside the other; the copy is of what was there at the beginning.
    /// After an error the keys and values written so far stay: of each key the values come first, then the
    /// subkeys, in the order of their listing. Throws "Can't replace a registry key by a link" with
    /// `ERROR_ALREADY_EXISTS`.
    void AddContentFrom(const RegistryKey& source) const;
    /// As AddContentFrom().
    RegistryKey& operator+=(const RegistryKey& source);

    /// Fills in the fields that `what` (InfoFields) selects, with one call of the platform. A class name
    /// of 300 characters and more is the error `ERROR_MORE_DATA`.
    ///@{
    void getInfo(Info<char>& info, unsigned short what) const;
    void getInfo(Info<wchar_t>& info, unsigned short what) const;
    ///@}
    /// Directly below the key.
    unsigned long getSubkeyCount() const;
    /// The default value counts when it is set.
    unsigned long getValueCount() const;
    /// In UTC.
    FILETIME GetLastWriteTime() const;
    /// Asks the platform each time.
    bool hasSubkeys() const { return getSubkeyCount() != 0; }

private:
    unsigned long inView(unsigned long access) const
    {
        return access & (KEY_WOW64_32KEY | KEY_WOW64_64KEY) ? access : access | getView();
    }
    template <class Ch> bool openKey(HKEY parent, const Ch* subkey, unsigned long access);
    // In the header, because compilers for 32 bits do not agree on how a function returns this type.
    template <class Ch> std::optional<unsigned long> findDWord(const Ch* name) const
    {
        unsigned long value = 0;
        return getValue(name, value) ? std::optional(value) : std::nullopt;
    }

    bool owns_ = false;
    unsigned char view_ = 0;
    HKEY key_ = nullptr;
};
TARN_LAYOUT(RegistryKey, 12, 24); // The virtual table, owns, key.

/// What the platform knows of a key. Lengths are in characters, without terminators.
template <class Ch> struct RegistryKey::Info {
    /// Empty for most keys.
    BasicString<Ch> className;
    /// Directly below the key.
    unsigned long subkeyCount = 0;
    /// Of the names of the subkeys.
    unsigned long maxSubkeyLength = 0;
    /// Of the classes of the subkeys.
    unsigned long maxClassLength = 0;
    /// The default value counts when it is set.
    unsigned long valueCount = 0;
    /// 0 when no value has a name.
    unsigned long maxValueNameLength = 0;
    /// In bytes.
    unsigned long maxValueDataSize = 0;
    /// In bytes.
    unsigned long securityDescriptorSize = 0;
    /// In UTC.
    FILETIME lastWriteTime = {};
};

/// What both snapshots are: a list of entries, from first to last, that can be copied and assigned.
template <class EntryType> class RegistryKey::Snapshot {
public:
    /// A KeyEntry or a ValueEntry.
    using Entry = EntryType;
    /// To any entry, in either direction.
    using const_iterator = typename std::vector<Entry>::const_iterator;

    /// The first entry in the platform's order.
    const_iterator begin() const { return entries_.begin(); }
    /// Behind the last entry.
    const_iterator end() const { return entries_.end(); }
    /// How many there were; the registry is not asked.
    std::size_t size() const { return entries_.size(); }
    /// True for a key that had none.
    bool empty() const { return entries_.empty(); }

protected:
    /// Filled in by the constructors of the derived classes.
    std::vector<Entry> entries_;
};

/// A subkey of a KeyEnumeration.
template <class Ch> struct RegistryKey::KeyEntry {
    /// Without the path.
    BasicString<Ch> name;
    /// Empty for most keys.
    BasicString<Ch> className;
    /// In UTC.
    FILETIME lastWriteTime;
};

/// A key's subkeys as they were when the snapshot was taken, in the platform's order. Does not keep the
/// key, so what is done to the key later (deleting the subkeys, say) does not disturb the iteration.
template <class Ch> class RegistryKey::KeyEnumeration : public Snapshot<KeyEntry<Ch>> {
public:
    /// `key` needs `KEY_ENUMERATE_SUB_KEYS`.
    TARN_API explicit KeyEnumeration(HKEY key);
};

/// A value of a ValueEnumeration.
template <class Ch> struct RegistryKey::ValueEntry {
    /// Empty for the default value.
    BasicString<Ch> name;
    /// A `REG_...` code.
    unsigned long type;
    /// In bytes, as this width reads the value.
    unsigned long size;
};

/// A key's values, without their data, as they were when the snapshot was taken.
template <class Ch> class RegistryKey::ValueEnumeration : public Snapshot<ValueEntry<Ch>> {
public:
    /// `key` needs `KEY_QUERY_VALUE`. Throws BadAllocation too.
    TARN_API explicit ValueEnumeration(HKEY key);
};
} // namespace tarn
