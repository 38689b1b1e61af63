#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

struct _EXCEPTION_POINTERS;

namespace tarn {
/// The library's own general failure. The other classes below are `std::runtime_error`s instead, so
/// catch `std::exception` to catch whatever the library throws.
class TARN_API Exception : public std::exception {
public:
    /// "Unknown Exception".
    Exception();
    /// what() is the description.
    Exception(const std::string& description);
    /// A copy has its own text.
    ///@{
    Exception(const Exception&);
    Exception& operator=(const Exception&);
    ~Exception() override;
    ///@}

    /// Valid until the description changes or the object ends.
    const char* what() const noexcept override;
    /// As what(), with the characters that the ANSI code page cannot hold.
    BasicString<wchar_t> whatW() const;
    /// Replaces what what() gives.
    void setDescription(const char* text);

private:
    std::string description_;
};

/// Data ended before a read or write was complete. Not derived from Exception.
class TARN_API EndOfFile : public std::runtime_error {
public:
    /// what() is the message.
    EndOfFile(const std::string& message);
    /// Never throw.
    ///@{
    EndOfFile(const EndOfFile&) noexcept;
    EndOfFile& operator=(const EndOfFile&) noexcept;
    ~EndOfFile() override;
    ///@}
};

/// Memory could not be had. Its text is "bad allocation" whatever the compiler's run-time library says.
class TARN_API BadAllocation : public std::bad_alloc {
public:
    BadAllocation() noexcept;
    /// Never throw.
    ///@{
    BadAllocation(const BadAllocation&) noexcept;
    BadAllocation& operator=(const BadAllocation&) noexcept;
    ~BadAllocation() override;
    ///@}
    /// "bad allocation".
    const char* what() const noexcept override;
};

/// A call of the runtime library failed. what() is the description, ": " and `strerror`'s text; unlike
/// a WindowsError it keeps the ": " when the description is empty.
class TARN_API CRTError : public std::runtime_error {
public:
    /// `error` is an `errno` value. The order of the arguments does not matter.
    ///@{
    CRTError(int error, const std::string& description);
    CRTError(const std::string& description, int error);
    ///@}
    /// Never throw.
    ///@{
    CRTError(const CRTError&) noexcept;
    CRTError& operator=(const CRTError&) noexcept;
    ~CRTError() override;
    ///@}

    /// As what(), with the characters of names that the ANSI code page cannot hold.
    BasicString<wchar_t> whatW() const;
    /// The `errno` value.
    int getError() const { return error_; }
    /// As getError().
    operator int() const { return error_; }

private:
    int error_;
};

/// A hardware or system exception (access violation, division by zero, ...) that happened in code of
/// the program or the library; see SETranslator.h. what() is "SEH exception" for every code; getReport()
/// says what happened, and where.
class TARN_API SEHError : public std::runtime_error {
public:
    /// `code` is the exception's, as `GetExceptionCode` gives it.
    SEHError(unsigned long code);
    /// Never throw.
    ///@{
    SEHError(const SEHError&) noexcept;
    SEHError& operator=(const SEHError&) noexcept;
    ~SEHError() override;
    ///@}

    /// For example 0xC0000005, an access violation.
    unsigned long getCode() const { return code_; }
    /// Names the fault and its place, "Access violation reading 0x0 at planner.exe+0x1234" for instance: how many bytes
    /// behind the start of the module the instruction lies (that of the call, when a pointer to a function was wrong).
    /// Without a place when the error was not made by a fault, and with an address alone when the module is gone.
    std::string getReport() const;
    /// As getReport(), so that tarn::whatW(error) names the fault, too.
    BasicString<wchar_t> whatW() const;

    /// Throws SEHError(code), with the place of the fault for getReport() unless `info` is null: the translator that
    /// the library installs for each thread.
    [[noreturn]] static void translate(unsigned int code, _EXCEPTION_POINTERS* info);

private:
    SEHError(unsigned long code, const std::string& text);

    unsigned long code_;
};

/// A common dialog failed (not: was cancelled). what() is the description, ": " and the error's name,
/// with the ": " also when the description is empty.
class TARN_API CommonDialogError : public std::runtime_error {
public:
    /// `error` is a code of `CommDlgExtendedError`. The order of the arguments does not matter.
    ///@{
    CommonDialogError(const std::string& description, unsigned long error);
    CommonDialogError(unsigned long error, const std::string& description);
    ///@}
    /// Never throw.
    ///@{
    CommonDialogError(const CommonDialogError&) noexcept;
    CommonDialogError& operator=(const CommonDialogError&) noexcept;
    ~CommonDialogError() override;
    ///@}

    /// A code of `CommDlgExtendedError`.
    unsigned long getError() const { return error_; }

    /// The code's symbolic name, "FNERR_BUFFERTOOSMALL" for instance, or "Unknown common didlaog error "
    /// and the number (sic: programs match this text).
    static BasicString<char> errorToString(unsigned long error);

private:
    unsigned long error_;
};

/// Mixed into the exceptions that stand for an `HRESULT`; converts both ways at COM borders.
class TARN_API HRESULTHolder {
public:
    HRESULTHolder() = default;
    /// It has no state of its own.
    ///@{
    HRESULTHolder(const HRESULTHolder&) = default;
    HRESULTHolder& operator=(const HRESULTHolder&) = default;
    ///@}

    /// The code that a COM method may return for the failure.
    virtual long getHRESULT() const = 0;

    /// Does nothing for success codes; throws BadAllocation for `E_OUTOFMEMORY`, WindowsError for codes
    /// of the Win32 facility and COMError for any other failure.
    ///@{
    static void throwOnError(long hr, const char* description);
    static void throwOnError(long hr);
    ///@}
    /// The holder's code if it is a failure, `E_OUTOFMEMORY` for a `std::bad_alloc`, and `E_FAIL` for the rest.
    static long getHRESULTFromException(const std::exception& e);

protected:
    ~HRESULTHolder() = default;
};

/// A call of the platform failed.
///
/// what() is the description, ": " and the system's text for the code, or that text alone when the
/// description is empty. It is composed at the first call, so an error nobody asks costs little; do not
/// ask one object from two threads at once.
class TARN_API WindowsError : public std::runtime_error, public HRESULTHolder {
public:
    /// `error` is a code of `GetLastError`.
    WindowsError(unsigned long error, const std::string& description = std::string());
    /// Reads the thread's last error: construct it before calling anything that may change that.
    WindowsError(const std::string& description = std::string());
    /// A copy has a text of its own.
    ///@{
    WindowsError(const WindowsError&);
    WindowsError& operator=(const WindowsError&);
    ~WindowsError() override;
    ///@}

    /// Valid as long as the object.
    const char* what() const noexcept override;
    /// As what(), with the characters that the ANSI code page cannot hold, of names in the description and of the
    /// system's text. It is composed at each call.
    BasicString<wchar_t> whatW() const;
    /// The system's text for the code, from "netmsg.dll" for 2100 to 2999; "Windows error 0x" and the
    /// code in hexadecimal when there is none. Never throws for lack of a text.
    virtual std::string getMessage() const;

    /// What the error was constructed with: the code, and the text that what() begins with.
    ///@{
    unsigned long getError() const { return error_; }
    const char* getDescription() const { return std::runtime_error::what(); }
    ///@}
    /// The code in the Win32 facility; 0 and codes that are an `HRESULT` already as they are.
    long getHRESULT() const override;

private:
    unsigned long error_;
    mutable std::string message_;
    mutable bool hasMessage_ = false;
};

/// A COM call failed. what() is the description, ": " and the name of the `HRESULT` (the name alone when
/// constructed without a description, "" not being "without").
class TARN_API COMError : public std::runtime_error, public HRESULTHolder {
public:
    /// `hr` is the failing call's `HRESULT`.
    ///@{
    COMError(unsigned long hr);
    COMError(unsigned long hr, const std::string& description);
    ///@}
    /// Never throw.
    ///@{
    COMError(const COMError&) noexcept;
    COMError& operator=(const COMError&) noexcept;
    ~COMError() override;
    ///@}

    long getHRESULT() const override;

    /// Throws COMError(`E_POINTER`) for null.
    static void checkPointer(void* p);

private:
    unsigned long hr_;
};

/// The whole text of any error, with the characters of names that the ANSI code page cannot hold: for messages to the
/// user, in UTF-8 for files and terminals. Other exceptions are read in the ANSI code page.
///@{
TARN_API BasicString<wchar_t> whatW(const std::exception& error);
TARN_API BasicString<char> whatUTF8(const std::exception& error);
///@}

/// A description that keeps all its characters, for any of the errors here, so that a name does not become "???":
///
///     throw tarn::WindowsError(tarn::errorText(L"Can't read \x4E2D.txt"));
///
/// what() has it in the ANSI code page, whatW() and whatUTF8() the whole. Keeps the thread's last error.
TARN_API std::string errorText(const wchar_t* whole);
} // namespace tarn
