#include "apps/ormund/AudioDriver.h"

#include "apps/ormund/DeviceDriver.h"
#include "apps/ormund/JackDriver.h"
#include "apps/ormund/MidiApi.h"
#include "apps/ormund/SilentDriver.h"
#include "base/Product.h"

#include <alsa/asoundlib.h>
#include <jack/jack.h>

#include <array>
#include <iostream>

namespace ormund {

namespace {

constexpr std::array kApis = {RtAudio::LINUX_PULSE, RtAudio::LINUX_ALSA};

// "pulse:Built-in" is the part "Built-in" of PulseAudio's devices, "pulse" any of them.
bool asksFor(const std::string& device, const char* api, std::string& part)
{
    const std::string name = api;
    if (device == name)
        part.clear();
    else if (device.starts_with(name + ":"))
        part = device.substr(name.size() + 1);
    else
        return false;
    return true;
}

OpenedDriver openFirst(LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before)
{
    OpenedDriver opened = JackDriver::open(host, wishes, before);
    std::string problems = opened.problem;
    for (const RtAudio::Api api : kApis) {
        if (opened.driver)
            return opened;
        opened = DeviceDriver::open(host, wishes, before, api, "");
        problems += ", " + opened.problem;
    }
    if (!opened.driver)
        opened.problem = problems;
    return opened;
}

template <typename Port>
void listPorts(std::vector<std::string>& names)
{
    try {
        Port port(RtMidi::LINUX_ALSA, product::kName);
        for (unsigned i = 0; i < port.getPortCount(); ++i)
            names.push_back(port.getPortName(i));
    } catch (const RtMidiError&) {
        names.clear();
    }
}

void sayNothing(const char*, int, const char*, int, const char*, ...) { }

} // namespace

OpenedDriver openSound(LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before)
{
    const std::string& device = wishes.device;
    if (device.empty())
        return openFirst(host, wishes, before);
    if (device == "none")
        return SilentDriver::open(host, wishes, before);
    if (device == "jack")
        return JackDriver::open(host, wishes, before);
    std::string part;
    for (const RtAudio::Api api : kApis)
        if (asksFor(device, DeviceDriver::nameOf(api), part))
            return DeviceDriver::open(host, wishes, before, api, part);
    OpenedDriver opened;
    for (const RtAudio::Api api : kApis)
        if (!opened.driver)
            opened = DeviceDriver::open(host, wishes, before, api, device);
    if (!opened.driver)
        opened.problem = "there is no device named " + device + " (--list-devices shows them)";
    return opened;
}

std::vector<SoundDevice> soundDevices()
{
    std::vector<SoundDevice> all;
    if (const int rate = JackDriver::serverRate())
        all.push_back({"jack", std::to_string(rate) + " Hz"});
    for (const RtAudio::Api api : kApis)
        for (SoundDevice& device : DeviceDriver::devices(api))
            all.push_back(std::move(device));
    return all;
}

MidiPorts midiPorts()
{
    MidiPorts all = JackDriver::ports();
    if (midiApi() != RtMidi::LINUX_ALSA)
        return all;
    listPorts<RtMidiIn>(all.inputs);
    listPorts<RtMidiOut>(all.outputs);
    return all;
}

void quietLibraries()
{
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
    snd_lib_error_set_handler(sayNothing);
    std::cerr.rdbuf(nullptr); // they write to it, this program to stderr
}

} // namespace ormund
