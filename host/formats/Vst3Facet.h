// VST3's objects: a pointer to a pointer to a table of functions, one for each interface.
#pragma once

// The interface's headers are C, and the order among them matters.
// clang-format off
#include <travesty/base.h>
#include <travesty/audio_processor.h>
#include <travesty/bstream.h>
#include <travesty/component.h>
#include <travesty/edit_controller.h>
#include <travesty/events.h>
#include <travesty/factory.h>
#include <travesty/host.h>
#include <travesty/unit.h>
#include <travesty/view.h>
// clang-format on

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace ormund {

// One interface of an object: what the host gets is its address.
template <class Table, class Owner>
struct Vst3Facet {
    const Table* table;
    Owner* owner;

    static Owner& of(void* self) { return *static_cast<Vst3Facet*>(self)->owner; }
    // The three functions that every interface begins with.
    static void addUnknown(Table& functions)
    {
        functions.query_interface = [](void* self, const v3_tuid iid, void** object) -> v3_result {
            *object = of(self).query(iid);
            return *object ? V3_OK : V3_NO_INTERFACE;
        };
        functions.ref = [](void* self) -> uint32_t { return of(self).addRef(); };
        functions.unref = [](void* self) -> uint32_t { return of(self).release(); };
    }
};

// The host's objects, which it lets us keep for a while.
template <class Interface>
class Vst3Ref {
public:
    Vst3Ref() = default;
    ~Vst3Ref() { reset(); }
    Vst3Ref(const Vst3Ref&) = delete;
    Vst3Ref& operator=(const Vst3Ref&) = delete;

    void reset(Interface** given = nullptr)
    {
        if (given)
            v3_cpp_obj_ref(given);
        if (Interface** const old = std::exchange(held, given))
            v3_cpp_obj_unref(old);
    }
    // Another interface of an object; none where it has none.
    template <class Other>
    void query(Other** object, const v3_tuid iid)
    {
        Interface** found = nullptr;
        if (object && v3_cpp_obj_query_interface(object, iid, &found) != V3_OK)
            found = nullptr;
        if (Interface** const old = std::exchange(held, found))
            v3_cpp_obj_unref(old);
    }
    explicit operator bool() const { return held != nullptr; }
    Interface** get() const { return held; }
    Interface* operator->() const { return v3_cpp_obj(held); }

private:
    Interface** held = nullptr;
};

template <size_t Size>
void copyWide(int16_t (&to)[Size], std::string_view from)
{
    const size_t count = std::min(from.size(), Size - 1);
    std::copy_n(from.begin(), count, to);
    to[count] = 0;
}

inline std::string narrow(const int16_t* from, size_t most)
{
    std::string text;
    for (size_t i = 0; i < most && from[i] != 0; ++i)
        text += from[i] > 0 && from[i] < 128 ? static_cast<char>(from[i]) : '?';
    return text;
}

} // namespace ormund
