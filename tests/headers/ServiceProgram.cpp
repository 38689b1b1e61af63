#include <tarn/ServiceProgram.h>

using namespace tarn;

void saveWhatIsNew();

#include "ServiceProgram.example"
