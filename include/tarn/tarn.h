#pragma once

// All of the library.

#include <tarn/Array.h>
#include <tarn/BasicString.h>
#include <tarn/COMIdentifiers.h>
#include <tarn/CharTraits.h>
#include <tarn/Cloneable.h>
#include <tarn/ConstString.h>
#include <tarn/Debug.h>
#include <tarn/Driver.h>
#include <tarn/Event.h>
#include <tarn/Exception.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/SETranslator.h>
#include <tarn/Serializable.h>
#include <tarn/Service.h>
#include <tarn/Stream.h>
#include <tarn/StringHelper.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Thread.h>
#include <tarn/VersionInfo.h>
#include <tarn/Windows.h>
#include <tarn/WindowsFile.h>
#include <tarn/WindowsHandle.h>
#include <tarn/WindowsModule.h>
