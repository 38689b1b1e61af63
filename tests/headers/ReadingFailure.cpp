#include <tarn/Archive.h>
#include <tarn/ReadingFailure.h>

#include <iostream>

void read(tarn::Archive& archive, tarn::ref_ptr<tarn::Serializable>& document);
void read(tarn::Archive& archive, tarn::ref_ptr<tarn::Serializable>& document)
{
#include "ReadingFailure.example"
}
