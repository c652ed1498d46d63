#pragma once

#include <glib-object.h>

#include <memory>

namespace corvel {

/// Owners for handles of C libraries: freed whichever way a scope is left.
template <auto Release>
struct Releaser {
    template <typename T>
    void operator()(T* pointer) const noexcept {
        Release(pointer);
    }
};

template <typename T, auto Release>
using Handle = std::unique_ptr<T, Releaser<Release>>;

template <typename T>
using GObjectHandle = Handle<T, g_object_unref>;

}  // namespace corvel
