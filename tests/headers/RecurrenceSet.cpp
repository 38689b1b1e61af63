#include <tarn/RecurrenceSet.h>
#include <tarn/TimeText.h>

#include <iostream>

using namespace tarn;

void list(const Time& from, const Time& to);
void list(const Time& from, const Time& to)
{
#include "RecurrenceSet.example"
}
