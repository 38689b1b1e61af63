#include <tarn/LowLevelIOStream.h>
#include <tarn/StreamValues.h>
#include <tarn/StdIOStream.h>

#include <chrono>
#include <vector>

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
    // forbidden: use of deleted function .*operator<<.*ValueWithoutEncoding
    file << 1.0L;
    // forbidden: note: declared here
    file << &file;
    // forbidden: Include <tarn/StreamValues.h>, or give the type a fieldsOf
    file << std::vector<long double>();
    // forbidden: use of deleted function .*ValueWithoutEncoding
    file << std::chrono::steady_clock::now();
}

void whatNobodyEncodesIsNotRead(tarn::StdIOStream& file, long double& value)
{
    // forbidden: Include <tarn/StreamValues.h>, or give the type a fieldsOf
    file >> value;
}
