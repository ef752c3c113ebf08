#include "apps/controls-gallery/Script.h"

#include "apps/controls-gallery/Gallery.h"
#include "view/offscreen/FrameUser.h"

#include <cairo.h>
#include <sstream>

namespace ormund {

namespace {

int buttonNamed(const std::string& name)
{
    return name == "right" ? kRButton : name == "middle" ? kMButton : kLButton;
}

int modifiersNamed(const std::string& names)
{
    int found = 0;
    std::istringstream parts(names);
    for (std::string part; std::getline(parts, part, '+');)
        found |= part == "shift" ? kShift : part == "ctrl" ? kControl : part == "alt" ? kAlt : 0;
    return found;
}

bool isButton(const std::string& word)
{
    return word == "left" || word == "middle" || word == "right";
}

// One line of a script, taken apart.
struct Command {
    explicit Command(const std::string& line) : words(line) { words >> name; }
    bool readPoint(CPoint& point) { return static_cast<bool>(words >> point.x >> point.y); }
    void readButtons(int& button, int& modifiers)
    {
        button = kLButton;
        modifiers = 0;
        for (std::string word; words >> word;) {
            if (isButton(word))
                button = buttonNamed(word);
            else
                modifiers |= modifiersNamed(word);
        }
    }
    std::string rest()
    {
        std::string text;
        std::getline(words >> std::ws, text);
        return text;
    }
    std::istringstream words;
    std::string name;
};

bool playMouse(Command& command, FrameUser& user)
{
    CPoint at;
    CPoint to;
    float notches = 0;
    if (!command.readPoint(at) || (command.name == "drag" && !command.readPoint(to))
        || (command.name == "wheel" && !(command.words >> notches)))
        return false;
    int button;
    int modifiers;
    command.readButtons(button, modifiers);
    if (command.name == "move")
        user.move(at, modifiers);
    else if (command.name == "press")
        user.press(at, button, modifiers);
    else if (command.name == "release")
        user.release(at, button, modifiers);
    else if (command.name == "click")
        user.click(at, button, modifiers);
    else if (command.name == "double")
        user.doubleClick(at, modifiers);
    else if (command.name == "drag")
        user.drag(at, to, button, modifiers);
    else if (command.name == "wheel")
        user.wheel(at, notches, modifiers);
    else
        return false;
    return true;
}

bool play(Command& command, Gallery& gallery, FrameUser& user)
{
    if (command.name == "idle") {
        int times = 1;
        command.words >> times;
        for (int i = 0; i < times; ++i)
            gallery.idle();
        return true;
    }
    if (command.name == "scale") {
        double factor = 1;
        command.words >> factor;
        gallery.frame().setScale(factor);
        return true;
    }
    if (command.name == "png")
        return writeGalleryPng(gallery, command.rest());
    if (command.name == "expect")
        return command.rest() == gallery.lastEvent();
    return playMouse(command, user);
}

} // namespace

bool writeGalleryPng(Gallery& gallery, const std::string& path)
{
    gallery.frame().repaint();
    cairo_surface_t* image = gallery.frame().getWindow().image();
    return image && cairo_surface_write_to_png(image, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

bool playScript(Gallery& gallery, std::istream& script, std::string& error)
{
    FrameUser user(gallery.frame());
    int number = 0;
    for (std::string line; std::getline(script, line);) {
        ++number;
        Command command(line);
        if (command.name.empty() || command.name[0] == '#')
            continue;
        if (!play(command, gallery, user)) {
            error =
                "line " + std::to_string(number) + ": " + line + "  (" + gallery.lastEvent() + ")";
            return false;
        }
    }
    return true;
}

} // namespace ormund
