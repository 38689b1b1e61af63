#include <tarn/PictureFile.h>

#include <tarn/BasicString.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/Exception.h>

#include "../foundation/Widened.h"

#include <wincodec.h>

namespace tarn {
namespace {
constexpr const char* cannotLoad = "Can't load picture";
constexpr const char* cannotSave = "Can't save picture";

void ensureLoaded(HRESULT result) { HRESULTHolder::throwOnError(result, cannotLoad); }
void ensureSaved(HRESULT result) { HRESULTHolder::throwOnError(result, cannotSave); }

COMInterfacePointer<IWICImagingFactory> makeFactory()
{
    return COMInterfacePointer<IWICImagingFactory>::create(CLSID_WICImagingFactory, CLSCTX_INPROC_SERVER);
}

const GUID& kindOf(const BasicString<wchar_t>& file)
{
    const BasicString<wchar_t> extension = BasicString<wchar_t>(file.substr(file.find_last_of(L"./\\") + 1)).toLower();
    if (extension == L"png")
        return GUID_ContainerFormatPng;
    if (extension == L"jpg" || extension == L"jpeg")
        return GUID_ContainerFormatJpeg;
    if (extension == L"bmp")
        return GUID_ContainerFormatBmp;
    if (extension == L"gif")
        return GUID_ContainerFormatGif;
    if (extension == L"tif" || extension == L"tiff")
        return GUID_ContainerFormatTiff;
    ensureSaved(WINCODEC_ERR_COMPONENTNOTFOUND);
    return GUID_NULL;
}

// The encoder says which format it takes, and gets the pixels in that; the size is that of the source.
void writeFrame(IWICImagingFactory& factory, IWICBitmapEncoder& encoder, IWICBitmapSource& source)
{
    COMInterfacePointer<IWICBitmapFrameEncode> frame;
    ensureSaved(encoder.CreateNewFrame(frame.put(), nullptr));
    ensureSaved(frame->Initialize(nullptr));
    WICPixelFormatGUID format;
    ensureSaved(source.GetPixelFormat(&format));
    ensureSaved(frame->SetPixelFormat(&format));
    COMInterfacePointer<IWICFormatConverter> converter;
    ensureSaved(factory.CreateFormatConverter(converter.put()));
    ensureSaved(converter->Initialize(&source, format, WICBitmapDitherTypeErrorDiffusion, nullptr, 0,
                                      WICBitmapPaletteTypeMedianCut));
    ensureSaved(frame->WriteSource(converter, nullptr));
    ensureSaved(frame->Commit());
}
} // namespace

Bitmap loadPicture(const char* file) { return loadPicture(widened(file).c_str()); }
Bitmap loadPicture(const wchar_t* file)
{
    const auto factory = makeFactory();
    COMInterfacePointer<IWICBitmapDecoder> decoder;
    ensureLoaded(
        factory->CreateDecoderFromFilename(file, nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand, decoder.put()));
    COMInterfacePointer<IWICBitmapFrameDecode> frame;
    ensureLoaded(decoder->GetFrame(0, frame.put()));
    COMInterfacePointer<IWICFormatConverter> converter;
    ensureLoaded(factory->CreateFormatConverter(converter.put()));
    ensureLoaded(converter->Initialize(frame, GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                       WICBitmapPaletteTypeCustom));
    UINT width = 0, height = 0;
    ensureLoaded(converter->GetSize(&width, &height));
    std::uint32_t* pixels = nullptr;
    Bitmap bitmap = Bitmap::withPixels(static_cast<int>(width), static_cast<int>(height), pixels);
    ensureLoaded(converter->CopyPixels(nullptr, 4 * width, 4 * width * height, reinterpret_cast<BYTE*>(pixels)));
    return bitmap;
}

void savePicture(HBITMAP bitmap, const char* file, bool hasOpacity)
{
    savePicture(bitmap, widened(file).c_str(), hasOpacity);
}
void savePicture(HBITMAP bitmap, const wchar_t* file, bool hasOpacity)
{
    const GUID& kind = kindOf(file);
    const auto factory = makeFactory();
    COMInterfacePointer<IWICBitmap> source;
    ensureSaved(factory->CreateBitmapFromHBITMAP(
        bitmap, nullptr, hasOpacity ? WICBitmapUsePremultipliedAlpha : WICBitmapIgnoreAlpha, source.put()));
    COMInterfacePointer<IWICStream> stream;
    ensureSaved(factory->CreateStream(stream.put()));
    ensureSaved(stream->InitializeFromFilename(file, GENERIC_WRITE));
    COMInterfacePointer<IWICBitmapEncoder> encoder;
    ensureSaved(factory->CreateEncoder(kind, nullptr, encoder.put()));
    ensureSaved(encoder->Initialize(stream, WICBitmapEncoderNoCache));
    writeFrame(*factory.get(), *encoder.get(), *source.get());
    ensureSaved(encoder->Commit());
}
} // namespace tarn
