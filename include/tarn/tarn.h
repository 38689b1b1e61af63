#pragma once

// All of the library.

#include <tarn/Array.h>
#include <tarn/BasicString.h>
#include <tarn/BitField.h>
#include <tarn/Bitmap.h>
#include <tarn/Brush.h>
#include <tarn/COMIdentifiers.h>
#include <tarn/CharTraits.h>
#include <tarn/ConstString.h>
#include <tarn/Cursor.h>
#include <tarn/DeHam48.h>
#include <tarn/Debug.h>
#include <tarn/DeviceContext.h>
#include <tarn/Event.h>
#include <tarn/Exception.h>
#include <tarn/Font.h>
#include <tarn/GDIHandle.h>
#include <tarn/I2CBus.h>
#include <tarn/Icon.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/OwnedHandle.h>
#include <tarn/PaintDeviceContext.h>
#include <tarn/Palette.h>
#include <tarn/Pen.h>
#include <tarn/Point.h>
#include <tarn/Rect.h>
#include <tarn/SETranslator.h>
#include <tarn/Size.h>
#include <tarn/StringHelper.h>
#include <tarn/VersionInfo.h>
#include <tarn/Windows.h>
#include <tarn/WindowsHandle.h>
#include <tarn/WindowsModule.h>
