#include "data/PresetTree.h"

#include "platform/KWFileio.h"

#include <algorithm>

namespace {

constexpr int kDeepest = 4; // a link that leads back up ends here
const std::string kNothing;

bool hasExtension(const std::string& name, const std::string& extension)
{
    return name.size() > extension.size() + 1 && name.front() != '.' && name.ends_with(extension)
        && name[name.size() - extension.size() - 1] == '.';
}

} // namespace

std::vector<PresetFile> PresetTree::filesOf(const std::string& folder, const std::string& extension)
{
    std::vector<PresetFile> files;
    for (const std::string& name : KWFileio::list(folder))
        if (hasExtension(name, extension)) {
            std::string path = KWFileio::join(folder, name);
            if (KWFileio::size(path) >= 0)
                files.push_back({std::move(path), KWFileio::nameOf(name)});
        }
    return files;
}

void PresetTree::scan(const std::vector<std::string>& roots, const std::string& extension)
{
    folders.clear();
    for (size_t i = 0; i < roots.size(); ++i)
        if (!roots[i].empty()
            && std::find(roots.begin(), roots.begin() + static_cast<long>(i), roots[i])
                == roots.begin() + static_cast<long>(i))
            add(roots[i], extension, 0);
}

void PresetTree::add(const std::string& path, const std::string& extension, int depth)
{
    Folder folder{path, path.substr(path.rfind('/') + 1), {}};
    std::vector<std::string> below;
    for (const std::string& name : KWFileio::list(path)) {
        std::string full = KWFileio::join(path, name);
        if (hasExtension(name, extension)) {
            if (KWFileio::size(full) >= 0)
                folder.files.push_back({std::move(full), KWFileio::nameOf(name)});
        } else if (name.front() != '.' && KWFileio::isFolder(full)) {
            below.push_back(std::move(full));
        }
    }
    if (!folder.files.empty())
        folders.push_back(std::move(folder));
    if (depth < kDeepest)
        for (const std::string& inner : below)
            add(inner, extension, depth + 1);
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
