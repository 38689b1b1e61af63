#include <tarn/AutoSelect.h>

#include <tarn/DeviceContext.h>

#include "../foundation/Closing.h"

#include <utility>

namespace tarn {
template <class Object>
AutoSelect<Object>::AutoSelect(HDC context, const Object& object)
    : AutoSelect(context, Object(object.getHandle(), false))
{
}
template <class Object>
AutoSelect<Object>::AutoSelect(HDC context, Object&& object)
    : context_(context), object_(std::move(object)), former_(DeviceContext(context).select(object_.getHandle()))
{
}

template <class Object> AutoSelect<Object>::~AutoSelect() noexcept(false)
{
    closeAtEnd([this] { DeviceContext(context_).select(former_.getHandle()); });
}

template class AutoSelect<Pen>;
template class AutoSelect<Brush>;
template class AutoSelect<Font>;
template class AutoSelect<Bitmap>;
} // namespace tarn
