#pragma once

// All of the library.

#include <tarn/Array.h>
#include <tarn/Atom.h>
#include <tarn/BStr.h>
#include <tarn/BasicString.h>
#include <tarn/COMIdentifiers.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/COMModule.h>
#include <tarn/COMServer.h>
#include <tarn/CharTraits.h>
#include <tarn/ConstString.h>
#include <tarn/Debug.h>
#include <tarn/Event.h>
#include <tarn/Exception.h>
#include <tarn/Factory.h>
#include <tarn/GUID.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>
#include <tarn/SETranslator.h>
#include <tarn/SafeArray.h>
#include <tarn/ShellExtension.h>
#include <tarn/StringHelper.h>
#include <tarn/Variant.h>
#include <tarn/VersionInfo.h>
#include <tarn/Windows.h>
#include <tarn/WindowsHandle.h>
#include <tarn/WindowsModule.h>
