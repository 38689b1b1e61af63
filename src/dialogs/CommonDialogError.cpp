#include <tarn/Exception.h>

#include <tarn/Windows.h>

#include "../foundation/Description.h"

#include <cderr.h>

namespace tarn {
CommonDialogError::CommonDialogError(const std::string& description, unsigned long error)
    : std::runtime_error(textWithReason(description, errorToString(error).c_str())), error_(error)
{
}
CommonDialogError::CommonDialogError(unsigned long error, const std::string& description)
    : CommonDialogError(description, error)
{
}
CommonDialogError::CommonDialogError(const CommonDialogError&) noexcept = default;
CommonDialogError& CommonDialogError::operator=(const CommonDialogError&) noexcept = default;
CommonDialogError::~CommonDialogError() = default;

BasicString<char> CommonDialogError::errorToString(unsigned long error)
{
#define TARN_NAMED(code)                                                                                               \
    case code:                                                                                                         \
        return #code
    switch (error) {
        TARN_NAMED(CDERR_GENERALCODES);
        TARN_NAMED(CDERR_STRUCTSIZE);
        TARN_NAMED(CDERR_INITIALIZATION);
        TARN_NAMED(CDERR_NOTEMPLATE);
        TARN_NAMED(CDERR_NOHINSTANCE);
        TARN_NAMED(CDERR_LOADSTRFAILURE);
        TARN_NAMED(CDERR_FINDRESFAILURE);
        TARN_NAMED(CDERR_LOADRESFAILURE);
        TARN_NAMED(CDERR_LOCKRESFAILURE);
        TARN_NAMED(CDERR_MEMALLOCFAILURE);
        TARN_NAMED(CDERR_MEMLOCKFAILURE);
        TARN_NAMED(CDERR_NOHOOK);
        TARN_NAMED(CDERR_REGISTERMSGFAIL);
        TARN_NAMED(PDERR_PRINTERCODES);
        TARN_NAMED(PDERR_SETUPFAILURE);
        TARN_NAMED(PDERR_PARSEFAILURE);
        TARN_NAMED(PDERR_RETDEFFAILURE);
        TARN_NAMED(PDERR_LOADDRVFAILURE);
        TARN_NAMED(PDERR_GETDEVMODEFAIL);
        TARN_NAMED(PDERR_INITFAILURE);
        TARN_NAMED(PDERR_NODEVICES);
        TARN_NAMED(PDERR_NODEFAULTPRN);
        TARN_NAMED(PDERR_DNDMMISMATCH);
        TARN_NAMED(PDERR_CREATEICFAILURE);
        TARN_NAMED(PDERR_PRINTERNOTFOUND);
        TARN_NAMED(PDERR_DEFAULTDIFFERENT);
        TARN_NAMED(CFERR_CHOOSEFONTCODES);
        TARN_NAMED(CFERR_NOFONTS);
        TARN_NAMED(CFERR_MAXLESSTHANMIN);
        TARN_NAMED(FNERR_FILENAMECODES);
        TARN_NAMED(FNERR_SUBCLASSFAILURE);
        TARN_NAMED(FNERR_INVALIDFILENAME);
        TARN_NAMED(FNERR_BUFFERTOOSMALL);
        TARN_NAMED(FRERR_FINDREPLACECODES);
        TARN_NAMED(FRERR_BUFFERLENGTHZERO);
        TARN_NAMED(CCERR_CHOOSECOLORCODES);
        TARN_NAMED(CDERR_DIALOGFAILURE);
    }
#undef TARN_NAMED
    return BasicString<char>::fromFormat("Unknown common didlaog error %u", static_cast<unsigned>(error));
}
} // namespace tarn
