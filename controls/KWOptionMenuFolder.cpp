// How a menu fills itself from a folder of presets.
#include "controls/KWMenuHelper.h"
#include "controls/KWOptionMenu.h"
#include "data/library/PresetTree.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace ormund {

namespace {

namespace fs = std::filesystem;

constexpr int kMaxDepth = 8;
constexpr const char* kNoPath = "none";

} // namespace

int KWOptionMenu::headerCount() const
{
    int count = 0;
    for (const MenuStyle bit : {kHeaderSelectFolder, kHeaderSave, kHeaderLoad, kHeaderPresets})
        count += hasStyle(bit) ? 1 : 0;
    return count;
}

// Each header has a fixed index; one that lies behind the end goes to the end.
void KWOptionMenu::addHeaders()
{
    struct Header {
        MenuStyle bit;
        const char* text;
        const char* bracketed;
    };
    static constexpr Header kHeaders[] = {
        {kHeaderSelectFolder, "Select Folder", "[Select Folder]"},
        {kHeaderSave, "Save Preset", "[Save Preset]"},
        {kHeaderLoad, "Load Preset", "[Load Preset]"},
        {kHeaderPresets, "--Presets--", "--Presets--"},
    };
    int index = 0;
    for (const Header& header : kHeaders) {
        if (hasStyle(header.bit))
            addEntry(hasStyle(kBracketHeaders) ? header.bracketed : header.text, index,
                header.bit == kHeaderPresets);
        ++index;
    }
}

void KWOptionMenu::scanFolder(const char* folder, const char* fileExtension)
{
    if (folder)
        path = folder;
    if (fileExtension)
        extension = fileExtension;
    if (!path.empty() && path != kNoPath && path.back() != '/')
        path += '/';
    const std::vector<std::string> chosen = currentChain();
    ScanBudget budget;
    fillFromFolder(budget);
    restoreChain(chosen);
}

void KWOptionMenu::fillFromFolder(ScanBudget& budget)
{
    removeAllEntries();
    addHeaders();
    if (!path.empty() && path != kNoPath && budget.folders-- > 0) {
        const PresetTree::Listing content = PresetTree::list(
            path, extension.substr(extension.starts_with('.') ? 1 : 0), budget.names);
        if (hasStyle(kNestedFolders)) {
            for (const std::string& name : content.folders)
                if (getEntryCount() < kMaxEntries && budget.folders > 0)
                    addFolder(path + name, name, budget);
        }
        const size_t files = std::min(content.files.size(), static_cast<size_t>(kMaxFiles));
        for (size_t i = 0; i < files; ++i)
            addEntry(content.files[i].name.c_str());
    }
}

void KWOptionMenu::addFolder(const std::string& folder, const std::string& name)
{
    ScanBudget budget;
    addFolder(folder, name, budget);
}

void KWOptionMenu::addFolder(const std::string& folder, const std::string& name, ScanBudget& budget)
{
    // A link back to an outer folder would nest for ever.
    int depth = 0;
    for (const KWOptionMenu* menu = this; menu; menu = menu->parentMenu) {
        std::error_code error;
        if (++depth > kMaxDepth || fs::equivalent(folder, menu->path, error))
            return;
    }
    constexpr uint32_t kCarried = kPresetMode | kNestedFolders | kSortFiles | kAlignLeft
        | kAlignRight | kCheckCurrent | kForNestedToo;
    auto sub = std::make_unique<KWOptionMenu>(
        CRect(), nullptr, getTag(), frame, extension.c_str(), menuStyle & kCarried);
    sub->parentMenu = this;
    sub->listBackColor = listBackColor;
    sub->listTextColor = listTextColor;
    sub->selectedBackColor = selectedBackColor;
    sub->selectedTextColor = selectedTextColor;
    sub->separatorColor = separatorColor;
    sub->frameColor = frameColor;
    sub->font = font;
    sub->fontSize = fontSize;
    sub->fontReduction = fontReduction;
    sub->minWidth = minWidth;
    sub->maxWidth = maxWidth;
    sub->arrowBitmap = arrowBitmap;
    sub->checkBitmap = checkBitmap;
    sub->topMargin = 0;
    sub->bottomMargin = 0;
    sub->path = folder + '/';
    sub->fillFromFolder(budget);
    addSubMenu(std::move(sub), name.c_str());
}

// The texts of the current row here, of the row in its sub-menu, and so on.
std::vector<std::string> KWOptionMenu::currentChain() const
{
    std::vector<std::string> chain;
    for (const KWOptionMenu* menu = this; menu && menu->isIndex(menu->currentEntry);
         menu = menu->getSubMenu(menu->currentEntry))
        chain.push_back(menu->entries[static_cast<size_t>(menu->currentEntry)].text);
    return chain;
}

void KWOptionMenu::restoreChain(const std::vector<std::string>& chain)
{
    KWOptionMenu* menu = this;
    for (const std::string& text : chain) {
        const int row = menu->findEntry(text.c_str());
        if (row < 0)
            return;
        menu->markCurrent(row);
        menu->CControl::setValue(static_cast<float>(row));
        KWOptionMenu* const sub = menu->getSubMenu(row);
        if (!sub)
            return;
        menu = sub;
    }
}

bool KWOptionMenu::getPresetPath(std::string& out, const char* fileExtension) const
{
    out.clear();
    if (!hasStyle(kPresetMode))
        return false;
    if (hasStyle(kNestedFolders) && path == kNoPath) {
        out = defaultPath;
        return false;
    }
    if (const KWOptionMenu* const sub = getSubMenu(currentEntry))
        return sub->getPresetPath(out, fileExtension);
    if (!isPlain(currentEntry)) {
        out = defaultPath;
        return false;
    }
    const std::string suffix = fileExtension ? fileExtension : extension;
    out = path + entries[static_cast<size_t>(currentEntry)].text;
    if (!suffix.empty())
        out += suffix.front() == '.' ? suffix : "." + suffix;
    return true;
}

} // namespace ormund
