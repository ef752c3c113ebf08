#include "panel/ControlCatalogue.h"

#include "data/parameters/Parameters.h"
#include "editor/PanelScale.h"

namespace ormund {

// The words of the menus. Those of a parameter's choices stand with the parameter.
namespace {

constexpr std::string_view kLearn[] = {"midi Learn", "clear"};
constexpr std::string_view kLearnTitled[] = {"Midi Learn", "Clear"};
constexpr std::string_view kDrivers[] = {"none", "Modulation"};

template <typename List>
std::vector<std::string> copyOf(const List& list)
{
    return {std::begin(list), std::end(list)};
}

} // namespace

std::vector<std::string> menuTexts(const ControlRow& row)
{
    switch (row.items) {
    case MenuItems::Choices:
    case MenuItems::Pictures: {
        std::vector<std::string> texts;
        for (int i = 0; i < choiceCount(row.tag); ++i)
            texts.emplace_back(choiceText(row.tag, i));
        return texts;
    }
    case MenuItems::Learn:
    case MenuItems::LearnSteps:
        return copyOf(kLearn);
    case MenuItems::LearnTitled:
        return copyOf(kLearnTitled);
    case MenuItems::Drivers:
        return copyOf(kDrivers);
    // The page menus are never opened; they hold a page's number.
    case MenuItems::TrackPages:
        return std::vector<std::string>(16, "entry");
    case MenuItems::TwoPages:
        return std::vector<std::string>(2, "entry");
    case MenuItems::PanelScales: {
        std::vector<std::string> texts;
        for (const double scale : kPanelScales)
            texts.push_back(std::to_string(int(scale * 100)) + " %");
        return texts;
    }
    default:
        return {};
    }
}

} // namespace ormund
