#include <tarn/IUnknownImpl.h>

struct IClock : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE getTime(long* ms) = 0;
};
__CRT_UUID_DECL(IClock, 0x2b1c7a04, 0x51de, 0x4a6b, 0x8f, 0x10, 0x3c, 0x92, 0x6e, 0x55, 0x01, 0xd9)

#include "IUnknownImpl.example"
