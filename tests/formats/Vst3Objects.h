// What a VST3 host hands to a plug-in: objects whose first word points to a table of functions.
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
#include <travesty/message.h>
#include <travesty/view.h>
// clang-format on

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace ormund {

// An object that its owner frees; `Table` is the interface's with the three functions before it.
template <class Table>
struct Vst3Object : Table {
    Vst3Object()
    {
        Table::query_interface = [](void*, const v3_tuid, void** object) -> v3_result {
            *object = nullptr;
            return V3_NO_INTERFACE;
        };
        Table::ref = Table::unref = [](void*) -> uint32_t { return 1; };
    }
    Vst3Object(const Vst3Object&) = delete;
    Vst3Object& operator=(const Vst3Object&) = delete;

    // What the plug-in gets.
    template <class Interface>
    Interface** as()
    {
        return reinterpret_cast<Interface**>(&word);
    }

private:
    void* word = this; // the tables are read through it
};

// The object of a function's first argument.
template <class Object>
Object& vst3Self(void* self)
{
    return **static_cast<Object**>(self);
}

struct Vst3StreamTable : v3_funknown {
    v3_bstream stream;
};

struct Vst3Stream : Vst3Object<Vst3StreamTable> {
    int most = 700; // a host may take and give less than is asked
    std::string bytes;
    size_t place = 0;

    Vst3Stream()
    {
        stream.read = [](void* self, void* to, int32_t size, int32_t* count) -> v3_result {
            auto& all = vst3Self<Vst3Stream>(self);
            *count = std::min({size, all.most, static_cast<int32_t>(all.bytes.size() - all.place)});
            std::memcpy(to, all.bytes.data() + all.place, static_cast<size_t>(*count));
            all.place += static_cast<size_t>(*count);
            return V3_OK;
        };
        stream.write = [](void* self, void* from, int32_t size, int32_t* count) -> v3_result {
            *count = std::min(size, vst3Self<Vst3Stream>(self).most);
            vst3Self<Vst3Stream>(self).bytes.append(
                static_cast<const char*>(from), static_cast<size_t>(*count));
            return V3_OK;
        };
        stream.seek = [](void*, int64_t, int32_t, int64_t*) -> v3_result { return V3_FALSE; };
        stream.tell = [](void*, int64_t*) -> v3_result { return V3_FALSE; };
    }
};

struct Vst3Attributes : Vst3Object<v3_attribute_list_cpp> {
    std::map<std::string, int64_t> ints;
    std::map<std::string, double> floats;
    std::map<std::string, std::vector<int16_t>> texts;

    Vst3Attributes()
    {
        attrlist.set_int = [](void* self, const char* id, int64_t value) -> v3_result {
            vst3Self<Vst3Attributes>(self).ints[id] = value;
            return V3_OK;
        };
        attrlist.get_int = [](void* self, const char* id, int64_t* value) -> v3_result {
            const auto& all = vst3Self<Vst3Attributes>(self).ints;
            const auto found = all.find(id);
            if (found != all.end())
                *value = found->second;
            return found != all.end() ? V3_OK : V3_FALSE;
        };
        attrlist.set_float = [](void* self, const char* id, double value) -> v3_result {
            vst3Self<Vst3Attributes>(self).floats[id] = value;
            return V3_OK;
        };
        attrlist.get_float = [](void* self, const char* id, double* value) -> v3_result {
            const auto& all = vst3Self<Vst3Attributes>(self).floats;
            const auto found = all.find(id);
            if (found != all.end())
                *value = found->second;
            return found != all.end() ? V3_OK : V3_FALSE;
        };
        attrlist.set_string = [](void* self, const char* id, const int16_t* text) -> v3_result {
            size_t length = 0;
            while (text[length] != 0)
                ++length;
            vst3Self<Vst3Attributes>(self).texts[id].assign(text, text + length + 1);
            return V3_OK;
        };
        attrlist.get_string = [](void* self, const char* id, int16_t* text,
                                  uint32_t bytes) -> v3_result {
            const auto& all = vst3Self<Vst3Attributes>(self).texts;
            const auto found = all.find(id);
            if (found == all.end())
                return V3_FALSE;
            std::copy_n(found->second.data(),
                std::min(found->second.size(), size_t{bytes} / sizeof(int16_t)), text);
            return V3_OK;
        };
        attrlist.set_binary = [](void*, const char*, const void*, uint32_t) -> v3_result {
            return V3_FALSE;
        };
        attrlist.get_binary = [](void*, const char*, const void**, uint32_t*) -> v3_result {
            return V3_FALSE;
        };
    }
};

// Made by the host for the plug-in, which lets it go.
struct Vst3Message : Vst3Object<v3_message_cpp> {
    std::string id;
    Vst3Attributes attributes;

    Vst3Message()
    {
        unref = [](void* self) -> uint32_t {
            delete *static_cast<Vst3Message**>(self);
            return 0;
        };
        msg.get_message_id = [](void* self) { return vst3Self<Vst3Message>(self).id.c_str(); };
        msg.set_message_id = [](void* self, const char* text) {
            vst3Self<Vst3Message>(self).id = text;
        };
        msg.get_attributes = [](void* self) {
            return vst3Self<Vst3Message>(self).attributes.as<v3_attribute_list>();
        };
    }
};

struct Vst3Application : Vst3Object<v3_host_application_cpp> {
    Vst3Application()
    {
        query_interface = [](void* self, const v3_tuid iid, void** object) -> v3_result {
            const bool known =
                v3_tuid_match(iid, v3_host_application_iid) || v3_tuid_match(iid, v3_funknown_iid);
            *object = known ? self : nullptr;
            return known ? V3_OK : V3_NO_INTERFACE;
        };
        app.get_name = [](void*, v3_str_128 name) -> v3_result {
            name[0] = 't';
            name[1] = 0;
            return V3_OK;
        };
        app.create_instance = [](void*, v3_tuid, v3_tuid iid, void** object) -> v3_result {
            if (!v3_tuid_match(iid, v3_message_iid))
                return V3_NO_INTERFACE;
            *object = (new Vst3Message)->as<v3_message>();
            return V3_OK;
        };
    }
};

// One change of one parameter.
struct Vst3Change : Vst3Object<v3_param_value_queue_cpp> {
    v3_param_id id = 0;
    double value = 0;
    int32_t at = 0;

    Vst3Change()
    {
        queue.get_param_id = [](void* self) { return vst3Self<Vst3Change>(self).id; };
        queue.get_point_count = [](void*) -> int32_t { return 1; };
        queue.get_point = [](void* self, int32_t, int32_t* frame, double* normalised) -> v3_result {
            *frame = vst3Self<Vst3Change>(self).at;
            *normalised = vst3Self<Vst3Change>(self).value;
            return V3_OK;
        };
        queue.add_point = [](void*, int32_t, double, int32_t*) -> v3_result { return V3_FALSE; };
    }
};

struct Vst3Changes : Vst3Object<v3_param_changes_cpp> {
    std::vector<std::tuple<v3_param_id, double, int32_t>> values;
    Vst3Change one; // the one that the plug-in looks at
    Vst3Change outgoing;

    Vst3Changes()
    {
        changes.get_param_count = [](void* self) {
            return static_cast<int32_t>(vst3Self<Vst3Changes>(self).values.size());
        };
        changes.get_param_data = [](void* self, int32_t index) {
            auto& all = vst3Self<Vst3Changes>(self);
            std::tie(all.one.id, all.one.value, all.one.at) =
                all.values[static_cast<size_t>(index)];
            return all.one.as<v3_param_value_queue>();
        };
        changes.add_param_data = [](void* self, v3_param_id*, int32_t* index) {
            *index = 0;
            return vst3Self<Vst3Changes>(self).outgoing.as<v3_param_value_queue>();
        };
    }
};

struct Vst3Events : Vst3Object<v3_event_list_cpp> {
    std::vector<v3_event> all;

    Vst3Events()
    {
        list.get_event_count = [](void* self) {
            return static_cast<uint32_t>(vst3Self<Vst3Events>(self).all.size());
        };
        list.get_event = [](void* self, int32_t index, v3_event* event) -> v3_result {
            *event = vst3Self<Vst3Events>(self).all[static_cast<size_t>(index)];
            return V3_OK;
        };
        list.add_event = [](void* self, v3_event* event) -> v3_result {
            vst3Self<Vst3Events>(self).all.push_back(*event);
            return V3_OK;
        };
    }
};

} // namespace ormund
