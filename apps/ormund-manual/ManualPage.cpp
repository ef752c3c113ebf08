#include "apps/ormund-manual/ManualPage.h"

#include "apps/ormund-manual/ManualTables.h"
#include "data/parameters/Parameters.h"
#include "host/formats/Base64.h"
#include "platform/KWFileio.h"

#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ormund {

namespace {

constexpr const char kFrame[] = "page.html";
constexpr size_t kMostFiles = 1000;

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    if (!file)
        throw std::runtime_error(path + " cannot be read");
    return content.str();
}

const std::string& need(const std::map<std::string, std::string>& given, const char* name)
{
    const auto found = given.find(name);
    if (found == given.end())
        throw std::runtime_error(std::string("an element lacks ") + name);
    return found->second;
}

int tagOf(const std::map<std::string, std::string>& given) { return std::stoi(need(given, "tag")); }

// A value as the hint line and the lists show it; as a plain number where they show one.
std::string valueText(int tag, float raw, bool percent)
{
    const ParameterEntry* entry = parameterEntry(tag);
    if (!entry || !entry->hasValue())
        throw std::runtime_error("tag " + std::to_string(tag) + " has no value");
    if (choiceCount(tag) > 0)
        return escaped(choiceText(tag, int(mapValue(entry->mapping, raw))));
    const float value = mapValue(entry->mapping, raw);
    char text[48];
    if (percent)
        std::snprintf(text, sizeof text, "%ld %%", std::lround(value * 100.0f));
    else
        std::snprintf(text, sizeof text, "%.3g", double(value));
    return text;
}

// Attributes of the head of an element: name="value", blanks between them.
std::map<std::string, std::string> attributesOf(const std::string& head)
{
    std::map<std::string, std::string> found;
    size_t at = 0;
    while ((at = head.find('=', at)) != std::string::npos) {
        size_t start = at;
        while (start > 0 && !std::isspace(static_cast<unsigned char>(head[start - 1])))
            --start;
        const size_t quote = head.find('"', at + 2);
        if (head[at + 1] != '"' || quote == std::string::npos)
            throw std::runtime_error("<" + head + "> is malformed");
        found[head.substr(start, at - start)] = head.substr(at + 2, quote - at - 2);
        at = quote;
    }
    return found;
}

// Without the elements in it: a heading may bear what is printed on the panel.
std::string plainWords(const std::string& heading)
{
    const std::string words = heading.substr(0, heading.find('<'));
    return words.substr(0, words.find_last_not_of(' ') + 1);
}

// The headings of a chapter as items of a list, those of the second level in lists of their own.
std::string contentsOf(const std::string& chapter, const std::string& name)
{
    std::string list;
    bool nested = false;
    for (size_t at = 0; (at = chapter.find("<h", at)) != std::string::npos; ++at) {
        const char level = chapter[at + 2];
        if (level != '2' && level != '3')
            continue;
        const size_t end = chapter.find('>', at);
        const std::string id = need(attributesOf(chapter.substr(at + 1, end - at - 1)), "id");
        const std::string words = chapter.substr(end + 1, chapter.find("</h", end) - end - 1);
        if (level == '3' && !nested)
            list += "<ul>";
        else if (level == '2' && !list.empty())
            list += nested ? "</ul></li>\n" : "</li>\n";
        nested = level == '3';
        list += "<li><a href=\"#" + id + "\">" + plainWords(words) + "</a>";
        list += nested ? "</li>" : "";
    }
    if (list.empty())
        throw std::runtime_error(name + " has no heading");
    return list + (nested ? "</ul></li>\n" : "</li>\n");
}

} // namespace

ManualPage::ManualPage(
    std::map<std::string, PanelPicture> panelPictures, std::string programVersion)
    : pictures(std::move(panelPictures)), version(std::move(programVersion))
{
}

std::string ManualPage::fill(const std::string& folder)
{
    size_t most = kMostFiles;
    for (const auto& [file, isFolder] : KWFileio::list(folder, most)) {
        if (isFolder || !file.ends_with(".html") || file == kFrame)
            continue;
        try {
            const std::string chapter = expand(contentOf(KWFileio::join(folder, file)));
            contents += contentsOf(chapter, file);
            chapters += "<section>\n" + chapter + "</section>\n";
        } catch (const std::exception& mishap) {
            throw std::runtime_error(file + ": " + mishap.what());
        }
    }
    return expand(contentOf(KWFileio::join(folder, kFrame)));
}

std::string ManualPage::expand(const std::string& text)
{
    std::string filled;
    size_t at = 0;
    for (size_t open; (open = text.find("<x-", at)) != std::string::npos;) {
        filled += text.substr(at, open - at);
        const size_t close = text.find('>', open);
        if (close == std::string::npos)
            throw std::runtime_error("an element is never closed");
        const bool whole = text[close - 1] == '/';
        const std::string head = text.substr(open + 1, close - open - (whole ? 2 : 1));
        const std::string name = head.substr(0, head.find_first_of(" \n"));
        std::string inner;
        at = close + 1;
        if (!whole) {
            const std::string end = "</" + name + ">";
            const size_t last = text.find(end, at);
            if (last == std::string::npos)
                throw std::runtime_error("<" + name + "> is never closed");
            inner = expand(text.substr(at, last - at));
            at = last + end.size();
        }
        filled += element(name, attributesOf(head), inner);
    }
    return filled + text.substr(at);
}

std::string ManualPage::element(
    const std::string& name, const Attributes& given, const std::string& inner)
{
    const auto values = [&](float raw) {
        const auto as = given.find("as");
        return valueText(tagOf(given), raw, as != given.end() && as->second == "percent");
    };
    if (name == "x-control")
        return control(given, inner);
    if (name == "x-label")
        return "<span class=\"label\">" + inner + "</span>";
    if (name == "x-key")
        return "<kbd class=\"note\">" + keyName(std::stoi(need(given, "note"))) + "</kbd>";
    if (name == "x-zone")
        return zoneName(need(given, "of"), std::stoi(need(given, "mode")));
    if (name == "x-number")
        return std::to_string(manualNumber(need(given, "of")));
    if (name == "x-range")
        return values(0.0f) + " to " + values(1.0f);
    if (name == "x-default")
        return values(parameterEntry(tagOf(given)) ? parameterEntry(tagOf(given))->defaultRaw : 0);
    if (name == "x-choices") {
        std::string list;
        for (int i = 0; i < choiceCount(tagOf(given)); ++i)
            list += (i > 0 ? ", " : "") + std::string("<i>") + escaped(choiceText(tagOf(given), i))
                + "</i>";
        return list;
    }
    if (name == "x-table")
        return manualTable(need(given, "of"));
    if (name == "x-picture")
        return picture(given, inner);
    if (name == "x-contents")
        return "<ul>\n" + contents + "</ul>\n";
    if (name == "x-chapters")
        return chapters;
    if (name == "x-version")
        return escaped(version);
    throw std::runtime_error("no element is called " + name);
}

std::string ManualPage::control(const Attributes& given, const std::string& inner) const
{
    const std::string hint = hintOfControl(tagOf(given));
    if (hint != inner)
        throw std::runtime_error("the hint of tag " + need(given, "tag") + " is \"" + hint
            + "\", not \"" + inner + "\"");
    return "<b class=\"control\">" + escaped(inner) + "</b>";
}

std::string ManualPage::picture(const Attributes& given, const std::string& inner)
{
    const std::string& name = need(given, "name");
    const auto found = pictures.find(name);
    if (found == pictures.end())
        throw std::runtime_error("no picture is called " + name);
    const PanelPicture& taken = found->second;
    // A small screen scrolls along the large ones instead of making them unreadable.
    constexpr int kLarge = 500;
    const std::string size = taken.width > kLarge ? "large" : "small";
    return "<figure class=\"" + size + "\" id=\"picture-" + name + "\"><img alt=\""
        + need(given, "alt") + "\" width=\"" + std::to_string(taken.width) + "\" height=\""
        + std::to_string(taken.height) + "\" src=\"data:image/png;base64," + toBase64(taken.png)
        + "\"><figcaption>" + inner + "</figcaption></figure>";
}

} // namespace ormund
