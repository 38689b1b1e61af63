#pragma once

// All of the library.

#include <tarn/Archive.h>
#include <tarn/Array.h>
#include <tarn/BasicString.h>
#include <tarn/COMIdentifiers.h>
#include <tarn/CharTraits.h>
#include <tarn/ClassSource.h>
#include <tarn/Cloneable.h>
#include <tarn/ConstString.h>
#include <tarn/Debug.h>
#include <tarn/Event.h>
#include <tarn/Exception.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/LowLevelIOStream.h>
#include <tarn/MemoryStream.h>
#include <tarn/SETranslator.h>
#include <tarn/Serializable.h>
#include <tarn/StdIOStream.h>
#include <tarn/Stream.h>
#include <tarn/StringHelper.h>
#include <tarn/VersionInfo.h>
#include <tarn/Windows.h>
#include <tarn/WindowsHandle.h>
#include <tarn/WindowsModule.h>
#include <tarn/ref_ptr.h>
