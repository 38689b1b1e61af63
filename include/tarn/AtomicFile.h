#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Stream.h>
#include <tarn/WindowsFile.h>

namespace tarn {
/// Writes a file so that everybody, after a crash or a power failure, too, finds the old content or the new one:
///
///     AtomicFile file(L"settings.bin");
///     file << version << text;
///     file.commit();
///
/// The new content goes to "NAME.new" in the same folder, which commit() puts in the place of the file when it is on
/// the disk. Without commit() the file stays as it was, so that an exception in between harms nothing. One object at a
/// time can save a file; what a crash has left of a "NAME.new" the next one overwrites. Nothing is buffered: put a
/// BufferingOutputStream in front for many small writes. The new file has the permissions of its folder. Failures throw
/// WindowsError.
class TARN_API AtomicFile : public OutputStream {
public:
    /// Throws "Can't open "NAME.new"", also while another object saves the file.
    explicit AtomicFile(const wchar_t* name);
    /// Neither copied nor moved.
    ///@{
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ///@}
    /// What was not committed is deleted; of a failure of that the debugger alone hears.
    ~AtomicFile();

    /// Throws "Error while writing SIZE bytes", also when the disk is full.
    unsigned int write(const void* buffer, unsigned int size) override;
    /// Nothing can be written any more. Throws "Can't flush file buffers" and "Can't replace "NAME"", while somebody
    /// has the file open, for instance; it may be called again then. A file that is read-only is not replaced.
    void commit();

    /// All in one call: `size` bytes become the content. Throws as the members do.
    static void save(const wchar_t* name, const void* data, unsigned int size);

private:
    const BasicString<wchar_t> name_;
    const BasicString<wchar_t> newName_; // As the platform takes it.
    WindowsFile file_;
    bool isCommitted_ = false;
};
} // namespace tarn
