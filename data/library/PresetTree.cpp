#include "data/library/PresetTree.h"

#include "platform/KWFileio.h"

#include <algorithm>

namespace ormund {

namespace {

constexpr int kDeepest = 4; // a link that leads back up ends here
const std::string kNothing;

bool hasExtension(const std::string& name, const std::string& extension)
{
    return extension.empty()
        || (name.size() > extension.size() + 1 && name.ends_with(extension)
            && name[name.size() - extension.size() - 1] == '.');
}

} // namespace

PresetTree::Listing PresetTree::list(
    const std::string& folder, const std::string& extension, size_t& most)
{
    Listing listing;
    for (KWFileio::Entry& entry : KWFileio::list(folder, most)) {
        if (entry.name.front() == '.')
            continue;
        if (entry.isFolder)
            listing.folders.push_back(std::move(entry.name));
        else if (hasExtension(entry.name, extension))
            listing.files.push_back(
                {KWFileio::join(folder, entry.name), KWFileio::nameOf(entry.name)});
    }
    return listing;
}

void PresetTree::scan(const std::vector<std::string>& roots, const std::string& fileExtension)
{
    folders.clear();
    extension = fileExtension;
    namesLeft = kMostNames;
    foldersLeft = kMostFolders;
    for (size_t i = 0; i < roots.size(); ++i)
        if (!roots[i].empty()
            && std::find(roots.begin(), roots.begin() + static_cast<long>(i), roots[i])
                == roots.begin() + static_cast<long>(i))
            add(roots[i], 0);
}

void PresetTree::add(const std::string& path, int depth)
{
    if (foldersLeft-- <= 0)
        return;
    Listing listing = list(path, extension, namesLeft);
    if (!listing.files.empty())
        folders.push_back({path, path.substr(path.rfind('/') + 1), std::move(listing.files)});
    if (depth < kDeepest)
        for (const std::string& inner : listing.folders)
            add(KWFileio::join(path, inner), depth + 1);
}

int PresetTree::fileCount(int folder) const
{
    if (folder < 0 || folder >= folderCount())
        return 0;
    return static_cast<int>(folders[static_cast<size_t>(folder)].files.size());
}

const PresetFile* PresetTree::fileAt(int folder, int index) const
{
    if (index < 0 || index >= fileCount(folder))
        return nullptr;
    return &folders[static_cast<size_t>(folder)].files[static_cast<size_t>(index)];
}

const std::string& PresetTree::folderName(int folder) const
{
    return fileCount(folder) > 0 ? folders[static_cast<size_t>(folder)].name : kNothing;
}

const std::string& PresetTree::folderPath(int folder) const
{
    return fileCount(folder) > 0 ? folders[static_cast<size_t>(folder)].path : kNothing;
}

int PresetTree::folderNamed(const std::string& name) const
{
    for (int i = 0; i < folderCount(); ++i)
        if (folders[static_cast<size_t>(i)].name == name)
            return i;
    return -1;
}

bool PresetTree::find(const std::string& path, int& folder, int& index) const
{
    const std::string inFolder = KWFileio::folderOf(path);
    const std::string folderWord = inFolder.substr(inFolder.rfind('/') + 1);
    const std::string name = KWFileio::nameOf(path);
    bool found = false;
    for (int f = 0; f < folderCount(); ++f)
        for (int i = 0; i < fileCount(f); ++i) {
            const bool same = fileAt(f, i)->path == path;
            if (!same && (found || folderName(f) != folderWord || fileAt(f, i)->name != name))
                continue;
            folder = f;
            index = i;
            if (same)
                return true;
            found = true;
        }
    return found;
}

} // namespace ormund
