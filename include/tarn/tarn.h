#pragma once

// All of the library.

#include <tarn/Array.h>
#include <tarn/BasicString.h>
#include <tarn/COMIdentifiers.h>
#include <tarn/Calendar.h>
#include <tarn/CharTraits.h>
#include <tarn/Cloneable.h>
#include <tarn/ConstString.h>
#include <tarn/Debug.h>
#include <tarn/Event.h>
#include <tarn/Exception.h>
#include <tarn/GregorianCalendar.h>
#include <tarn/GregorianCalendarBase.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/SETranslator.h>
#include <tarn/StringHelper.h>
#include <tarn/Time.h>
#include <tarn/TimeText.h>
#include <tarn/TimeZone.h>
#include <tarn/VersionInfo.h>
#include <tarn/Windows.h>
#include <tarn/WindowsHandle.h>
#include <tarn/WindowsModule.h>
