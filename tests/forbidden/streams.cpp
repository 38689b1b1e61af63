#include <tarn/LowLevelIOStream.h>
#include <tarn/StdIOStream.h>

bool aFileIsNoTruthValue(tarn::StdIOStream& file)
{
    // forbidden: cannot convert 'tarn::StdIOStream' to 'bool'
    return file;
}

void descriptorsAreNotClosedTwice(tarn::LowLevelFileStream& file)
{
    // forbidden: use of deleted function .*LowLevelFileStream\(const tarn::LowLevelFileStream
    tarn::LowLevelFileStream copy(file);
}

void whatNobodyEncodesIsNotWritten(tarn::StdIOStream& file)
{
    // forbidden: no match for 'operator<<' .*'tarn::StdIOStream' and 'long double'
    file << 1.0L;
}
