// Draws the skin at build time:
//   skin-draw --pack DIR          the strips at every scale, with its tables
//   skin-draw --icons DIR         the application's icon
//   skin-draw --sheet F.png       all strips on one picture
//   skin-draw --panel F.png [--synth]  the panel with its controls
// --scale N for the pictures, 2 if not given.
#include "skin/draw/AppIcon.h"
#include "skin/draw/Preview.h"
#include "view/DrawnScales.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>

using namespace ormund;

namespace {

void writeFile(const std::string& path, const std::vector<uint8_t>& bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    if (!out)
        throw std::runtime_error("cannot write " + path);
}

// What makes a strip unusable: a size that differs from the table's. `height` is of all parts.
void checkSize(const SkinRow& row, double scale, int width, int height)
{
    if (width != int(row.width() * scale + 0.5) || height != int(row.height() * scale + 0.5))
        throw std::runtime_error("bitmap " + std::to_string(row.number) + " has the wrong size");
}

// One file with all images, a table of the strips, and one of where each part begins.
void writePack(const std::string& folder)
{
    std::vector<uint8_t> pack;
    std::string index, offsets;
    size_t parts = 0;
    for (const SkinRow& row : skinTable()) {
        index += "{ { " + std::to_string(row.number) + ", " + std::to_string(row.frameWidth) + ", "
            + std::to_string(row.frameHeight) + ", " + std::to_string(row.frames) + " }, {";
        for (const double scale : kDrawnScales) {
            const int together = framesOfPart(row, scale);
            index += " { " + std::to_string(parts) + ", " + std::to_string(together) + " },";
            int width = 0, height = 0;
            for (int frame = 0; frame < row.frames; frame += together) {
                const auto image =
                    makeFrames(row, scale, frame, std::min(frame + together, row.frames));
                width = image->width();
                height += image->height();
                const std::vector<uint8_t> part = packed(*image);
                offsets += std::to_string(pack.size()) + ",\n";
                pack.insert(pack.end(), part.begin(), part.end());
                ++parts;
            }
            checkSize(row, scale, width, height);
        }
        index += " } },\n";
    }
    writeFile(folder + "/SkinPack.bin", pack);
    offsets += std::to_string(pack.size()) + ",\n";
    writeFile(folder + "/SkinPack.inc", {index.begin(), index.end()});
    writeFile(folder + "/SkinParts.inc", {offsets.begin(), offsets.end()});
}

void writeIcons(const std::string& folder)
{
    for (const int size : kIconSizes)
        writePng(folder + "/ormund-" + std::to_string(size) + ".png", *appIcon(size));
    writeAppIconSvg(folder + "/ormund.svg");
}

int run(int argc, char** argv)
{
    std::string pack, icons, sheet, panel;
    double scale = 2;
    Page page = Page::Settings;
    const struct {
        const char* name;
        std::string* value;
    } options[] = {
        {"--pack", &pack}, {"--icons", &icons}, {"--sheet", &sheet}, {"--panel", &panel}};
    for (int i = 1; i < argc; ++i) {
        bool known = false;
        for (const auto& option : options)
            if (std::strcmp(argv[i], option.name) == 0 && i + 1 < argc) {
                *option.value = argv[++i];
                known = true;
                break;
            }
        if (known)
            continue;
        if (std::strcmp(argv[i], "--synth") == 0)
            page = Page::Synth;
        else if (std::strcmp(argv[i], "--scale") == 0 && i + 1 < argc)
            scale = std::atof(argv[++i]);
        else
            throw std::runtime_error(std::string("unknown option ") + argv[i]);
    }
    if (!pack.empty())
        writePack(pack);
    if (!icons.empty())
        writeIcons(icons);
    if (!sheet.empty())
        writePng(sheet, *contactSheet(scale));
    if (!panel.empty())
        writePng(panel, *panelPicture(scale, page));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "skin-draw: %s\n", error.what());
        return 1;
    }
}
