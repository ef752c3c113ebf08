// Writes the description of the LV2 plug-in into a folder, out of the table of parameters.
#include "host/formats/Lv2Ports.h"

#include "base/Product.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <string>
#include <vector>

namespace ormund {

namespace {
constexpr char kPrefixes[] = R"(@prefix atom:  <http://lv2plug.in/ns/ext/atom#> .
@prefix doap:  <http://usefulinc.com/ns/doap#> .
@prefix foaf:  <http://xmlns.com/foaf/0.1/> .
@prefix ia:    <http://lv2plug.in/ns/ext/instance-access> .
@prefix lv2:   <http://lv2plug.in/ns/lv2core#> .
@prefix midi:  <http://lv2plug.in/ns/ext/midi#> .
@prefix pg:    <http://lv2plug.in/ns/ext/port-groups#> .
@prefix rdf:   <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .
@prefix rdfs:  <http://www.w3.org/2000/01/rdf-schema#> .
@prefix rsz:   <http://lv2plug.in/ns/ext/resize-port#> .
@prefix state: <http://lv2plug.in/ns/ext/state#> .
@prefix time:  <http://lv2plug.in/ns/ext/time#> .
@prefix ui:    <http://lv2plug.in/ns/extensions/ui#> .
@prefix urid:  <http://lv2plug.in/ns/ext/urid#> .

)";

std::string node(const std::string& name)
{
    std::string text("<");
    for (const std::string& part :
        {std::string(lv2::kLv2Uri), std::string("#"), name, std::string(">")})
        text += part;
    return text;
}

void writeManifest(std::ostream& out, const std::string& binary)
{
    out << kPrefixes << "<" << lv2::kLv2Uri << ">\n    a lv2:Plugin ;\n    lv2:binary <" << binary
        << "> ;\n    rdfs:seeAlso <ormund.ttl> .\n\n<" << lv2::kLv2UiUri
        << ">\n    a ui:X11UI ;\n    ui:binary <" << binary << R"(> ;
    lv2:extensionData ui:idleInterface , ui:showInterface ;
    lv2:optionalFeature ui:noUserResize , ui:parent , ui:resize , ui:touch ;
    lv2:requiredFeature ui:idleInterface , <http://lv2plug.in/ns/ext/instance-access> .
)";
}

// The sections in their order.
std::vector<std::string> sections()
{
    std::vector<std::string> names;
    for (int number = kFirstNumber; number < kFormatParameters; ++number)
        if (std::string name(formatSection(number)); names.empty() || names.back() != name)
            names.push_back(name);
    return names;
}

std::string groupOf(const std::string& section)
{
    std::string symbol = section;
    std::ranges::transform(symbol, symbol.begin(),
        [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return symbol;
}

// The values that a host can name: each choice, or the ends and the quarters of what has a unit.
std::vector<float> namedValues(int number)
{
    const int tag = tagOfNumber(number);
    std::vector<float> values;
    for (int i = 0; i < choiceCount(tag); ++i)
        values.push_back(formatValue(number, choiceText(tag, i)).value_or(0.0f));
    if (values.empty() && !parameterEntry(tag)->unit.empty())
        values = {0, 0.25f, 0.5f, 0.75f, 1};
    return values;
}

// The middle of a choice: what a host shows by its name.
float middle(int number)
{
    const float value = formatDefault(number);
    return choiceCount(tagOfNumber(number)) > 0
        ? formatValue(number, formatText(number, value)).value_or(value)
        : value;
}

void writeControl(std::ostream& out, int number)
{
    const bool isBypass = number == kBypassNumber;
    out << " ,\n    [\n        a lv2:InputPort, lv2:ControlPort ;\n        lv2:index "
        << lv2::portOf(number) << " ;\n        lv2:symbol \""
        << (isBypass ? "lv2_enabled" : formatSymbol(number)) << "\" ;\n        lv2:name \""
        << (isBypass ? "Enabled" : formatName(number)) << "\" ;\n        lv2:default "
        << (isBypass ? 1.0f : middle(number))
        << " ;\n        lv2:minimum 0.0 ;\n        lv2:maximum 1.0 ;\n";
    if (isSwitch(number))
        out << "        lv2:portProperty lv2:toggled , lv2:integer ;\n";
    if (isBypass) {
        out << "        lv2:designation lv2:enabled ;\n    ]";
        return;
    }
    out << "        pg:group " << node(groupOf(std::string(formatSection(number)))) << " ;\n";
    if (!isSwitch(number))
        for (const float value : namedValues(number))
            out << "        lv2:scalePoint [ rdfs:label \"" << formatText(number, value)
                << "\" ; rdf:value " << value << " ] ;\n";
    out << "    ]";
}

void writePlugin(std::ostream& out)
{
    out << kPrefixes << "<" << lv2::kLv2Uri << ">\n    a lv2:InstrumentPlugin, lv2:Plugin ;\n"
        << "    doap:name \"" << product::kName << R"(" ;
    doap:license <https://spdx.org/licenses/ISC> ;
    doap:shortdesc ")"
        << product::kSummary << R"(" ;
    rdfs:comment ")"
        << product::kSummary << R"(" ;
    lv2:project )"
        << node("project") << R"( ;
    lv2:minorVersion 2 ;
    lv2:microVersion 8 ;
    lv2:extensionData state:interface ;
    lv2:requiredFeature urid:map ;
    lv2:optionalFeature lv2:hardRTCapable , state:threadSafeRestore ;
    ui:ui <)"
        << lv2::kLv2UiUri << "> ;\n    pg:mainOutput " << node("stereo") << " ;\n    lv2:port";
    for (const char* side : {"left", "right"})
        out << (*side == 'l' ? "" : " ,\n   ")
            << " [\n        a lv2:OutputPort, lv2:AudioPort ;\n        lv2:index "
            << (*side == 'l' ? lv2::kLeft : lv2::kRight)
            << " ;\n        lv2:symbol \"lv2_audio_out_" << (*side == 'l' ? 1 : 2)
            << "\" ;\n        lv2:name \""
            << (*side == 'l' ? product::kLeftName : product::kRightName)
            << "\" ;\n        pg:group " << node("stereo")
            << " ;\n        lv2:designation pg:" << side << " ;\n    ]";
    out << " ,\n    [\n        a lv2:InputPort, atom:AtomPort ;\n        lv2:index "
        << lv2::kEventsIn << R"( ;
        lv2:symbol "lv2_events_in" ;
        lv2:name ")"
        << product::kMidiName << R"(" ;
        lv2:designation lv2:control ;
        atom:bufferType atom:Sequence ;
        atom:supports midi:MidiEvent , time:Position ;
        rsz:minimumSize )"
        << lv2::kEventBytes << " ;\n    ] ,\n    [\n        a lv2:OutputPort, atom:AtomPort ;\n"
        << "        lv2:index " << lv2::kEventsOut << R"( ;
        lv2:symbol "lv2_events_out" ;
        lv2:name ")"
        << product::kMidiName << R"(" ;
        lv2:designation lv2:control ;
        atom:bufferType atom:Sequence ;
        atom:supports midi:MidiEvent , state:StateChanged ;
        rsz:minimumSize )"
        << lv2::kEventBytes << " ;\n    ]";
    for (int number = 0; number < kFormatParameters; ++number)
        writeControl(out, number);
    out << " .\n\n"
        << node("project") << R"(
    a doap:Project ;
    doap:name ")"
        << product::kName << R"(" ;
    doap:license <https://spdx.org/licenses/ISC> ;
    doap:maintainer [ foaf:name ")"
        << product::kMaker << R"(" ] .

)" << node("stereo")
        << R"(
    a pg:OutputGroup , pg:StereoGroup ;
    lv2:symbol "stereo" ;
    lv2:name "Stereo" .
)";
    for (const std::string& section : sections())
        out << "\n"
            << node(groupOf(section)) << "\n    a pg:InputGroup ;\n    lv2:symbol \""
            << groupOf(section) << "\" ;\n    lv2:name \"" << section << "\" .\n";
}
} // namespace

} // namespace ormund

int main(int count, char** arguments)
{
    if (count != 3) {
        std::fprintf(stderr, "usage: %s FOLDER BINARY\n", arguments[0]);
        return 2;
    }
    const std::string folder = arguments[1];
    std::ofstream manifest(folder + "/manifest.ttl");
    std::ofstream plugin(folder + "/ormund.ttl");
    for (std::ofstream* file : {&manifest, &plugin})
        *file << std::fixed << std::setprecision(9);
    ormund::writeManifest(manifest, arguments[2]);
    ormund::writePlugin(plugin);
    manifest.close();
    plugin.close();
    if (manifest && plugin)
        return 0;
    std::fprintf(stderr, "cannot write to %s\n", arguments[1]);
    return 1;
}
