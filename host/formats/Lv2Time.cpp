#include "host/formats/Lv2Time.h"

#include <cmath>
#include <limits>
#include <lv2/atom/util.h>
#include <lv2/time/time.h>

namespace ormund {

Lv2Time::Urids::Urids(const LV2_URID_Map& map)
{
    const struct {
        LV2_URID& id;
        const char* uri;
    } all[] = {{object, LV2_ATOM__Object}, {blank, LV2_ATOM__Blank}, {intType, LV2_ATOM__Int},
        {longType, LV2_ATOM__Long}, {floatType, LV2_ATOM__Float}, {doubleType, LV2_ATOM__Double},
        {position, LV2_TIME__Position}, {speed, LV2_TIME__speed}, {bar, LV2_TIME__bar},
        {barBeat, LV2_TIME__barBeat}, {beat, LV2_TIME__beat}, {beatUnit, LV2_TIME__beatUnit},
        {beatsPerBar, LV2_TIME__beatsPerBar}, {tempo, LV2_TIME__beatsPerMinute},
        {frame, LV2_TIME__frame}};
    for (const auto& [id, uri] : all)
        id = map.map(map.handle, uri);
}

Lv2Time::Lv2Time(double hertz, const LV2_URID_Map& map) : rate(hertz), urids(map)
{
    now.valid = true;
}

double Lv2Time::number(const LV2_Atom* atom) const
{
    const auto is = [atom](LV2_URID type, size_t size) {
        return atom && atom->type == type && atom->size >= size;
    };
    double value = std::numeric_limits<double>::quiet_NaN();
    if (is(urids.doubleType, sizeof(double)))
        value = reinterpret_cast<const LV2_Atom_Double*>(atom)->body;
    else if (is(urids.floatType, sizeof(float)))
        value = static_cast<double>(reinterpret_cast<const LV2_Atom_Float*>(atom)->body);
    else if (is(urids.longType, sizeof(int64_t)))
        value = static_cast<double>(reinterpret_cast<const LV2_Atom_Long*>(atom)->body);
    else if (is(urids.intType, sizeof(int32_t)))
        value = reinterpret_cast<const LV2_Atom_Int*>(atom)->body;
    return std::isfinite(value) ? value : std::numeric_limits<double>::quiet_NaN();
}

std::optional<SongPlace> Lv2Time::read(const LV2_Atom& event) const
{
    if ((event.type != urids.object && event.type != urids.blank)
        || event.size < sizeof(LV2_Atom_Object_Body))
        return std::nullopt;
    const auto* object = reinterpret_cast<const LV2_Atom_Object*>(&event);
    if (object->body.otype != urids.position)
        return std::nullopt;
    const LV2_Atom *speed = nullptr, *bar = nullptr, *barBeat = nullptr, *beat = nullptr,
                   *beatUnit = nullptr, *beatsPerBar = nullptr, *tempo = nullptr, *frame = nullptr;
    lv2_atom_object_get(object, urids.speed, &speed, urids.bar, &bar, urids.barBeat, &barBeat,
        urids.beat, &beat, urids.beatUnit, &beatUnit, urids.beatsPerBar, &beatsPerBar, urids.tempo,
        &tempo, urids.frame, &frame, 0);
    SongPlace next = now;
    // What a report leaves out is as it was.
    if (number(tempo) > 0)
        next.tempo = number(tempo);
    if (number(beatUnit) >= 1)
        next.denominator = static_cast<int>(number(beatUnit));
    if (number(beatsPerBar) > 0)
        next.numerator = static_cast<int>(std::ceil(number(beatsPerBar)));
    if (!std::isnan(number(speed)))
        next.playing = number(speed) != 0;
    const double beatQuarters = 4.0 / next.denominator;
    if (const double bars = number(bar), beats = number(barBeat);
        !std::isnan(bars) && !std::isnan(beats)) {
        const double perBar = number(beatsPerBar) > 0 ? number(beatsPerBar) : next.numerator;
        next.barStart = bars * perBar * beatQuarters;
        next.quarters = next.barStart + beats * beatQuarters;
    } else if (!std::isnan(number(beat))) {
        next.quarters = number(beat) * beatQuarters;
    } else if (!std::isnan(number(frame))) {
        next.quarters = number(frame) / rate * next.tempo / 60.0;
    }
    return next;
}

} // namespace ormund
