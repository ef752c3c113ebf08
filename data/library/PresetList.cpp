#include "data/library/PresetList.h"

#include "platform/KWFileio.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

namespace ormund {

namespace {

constexpr size_t kArrivalStep = 64; // files between two looks at the lock

std::string small(std::string text)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::vector<std::string> splitWords(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

bool hasAll(const std::string& text, const std::vector<std::string>& words)
{
    return std::all_of(words.begin(), words.end(),
        [&](const std::string& word) { return text.find(word) != std::string::npos; });
}

bool hasTags(const ListedPreset& preset, const std::vector<std::string>& wanted)
{
    if (wanted.empty())
        return true;
    const std::vector<std::string> own = splitWords(preset.summary.about.tags);
    return std::all_of(wanted.begin(), wanted.end(), [&](const std::string& tag) {
        return std::find(own.begin(), own.end(), tag) != own.end();
    });
}

std::string searchable(const ListedPreset& preset)
{
    const PresetAbout& about = preset.summary.about;
    return small(preset.name + '\n' + preset.folder + '\n' + about.tags + '\n' + about.author + '\n'
        + about.description);
}

} // namespace

PresetList::~PresetList() { stop(); }

void PresetList::stop()
{
    ending = true;
    if (worker.joinable())
        worker.join();
    ending = false;
    takeRead();
}

void PresetList::fill(const PresetTree& tree, const std::string& mine)
{
    stop();
    std::map<std::string, PresetSummary> known;
    for (ListedPreset& preset : presets)
        if (preset.isRead)
            known.emplace(std::move(preset.path), std::move(preset.summary));
    presets.clear();
    nameWords.clear();
    allWords.clear();
    readCount = 0;
    for (int folder = 0; folder < tree.folderCount(); ++folder)
        for (int i = 0; i < tree.fileCount(folder); ++i) {
            const PresetFile& file = *tree.fileAt(folder, i);
            ListedPreset preset{file.path, file.name, tree.folderName(folder),
                !mine.empty() && file.path.starts_with(mine + '/'), false, {}};
            nameWords.push_back(small(file.name));
            allWords.push_back(searchable(preset));
            presets.push_back(std::move(preset));
        }
    // Everything is read again, since a file may have been replaced; until then the old holds.
    std::vector<std::string> paths;
    for (size_t i = 0; i < presets.size(); ++i) {
        paths.push_back(presets[i].path);
        if (const auto old = known.find(presets[i].path); old != known.end()) {
            presets[i].summary = old->second;
            allWords[i] = searchable(presets[i]);
        }
    }
    worker = std::thread([this, paths = std::move(paths)] { work(paths); });
}

void PresetList::work(const std::vector<std::string>& paths)
{
    std::vector<std::pair<size_t, PresetSummary>> ready;
    for (size_t i = 0; i < paths.size() && !ending; ++i) {
        ready.emplace_back(i, summaryOfFile(paths[i]));
        if (ready.size() < kArrivalStep && i + 1 < paths.size())
            continue;
        const std::lock_guard guard(lock);
        std::move(ready.begin(), ready.end(), std::back_inserter(arrived));
        ready.clear();
    }
}

bool PresetList::takeRead()
{
    std::vector<std::pair<size_t, PresetSummary>> taken;
    {
        const std::lock_guard guard(lock);
        taken.swap(arrived);
    }
    for (auto& [index, summary] : taken) {
        presets[index].summary = std::move(summary);
        presets[index].isRead = true;
        allWords[index] = searchable(presets[index]);
        ++readCount;
    }
    return !taken.empty();
}

std::vector<PresetList::Hit> PresetList::find(const Query& query) const
{
    const std::vector<std::string> words = splitWords(small(query.text));
    std::vector<Hit> hits;
    std::vector<Hit> others;
    for (size_t i = 0; i < presets.size(); ++i) {
        if (!hasAll(allWords[i], words) || !hasTags(presets[i], query.tags))
            continue;
        const bool byName = hasAll(nameWords[i], words);
        (byName ? hits : others).push_back({i, byName});
    }
    hits.insert(hits.end(), others.begin(), others.end());
    return hits;
}

std::vector<std::string> PresetList::commonTags(size_t most) const
{
    std::map<std::string, int> counts;
    for (const ListedPreset& preset : presets)
        for (const std::string& tag : splitWords(preset.summary.about.tags))
            ++counts[tag];
    std::vector<std::pair<int, std::string>> order;
    for (const auto& [tag, count] : counts)
        order.emplace_back(-count, tag);
    std::sort(order.begin(), order.end());
    std::vector<std::string> tags;
    for (size_t i = 0; i < order.size() && i < most; ++i)
        tags.push_back(order[i].second);
    return tags;
}

PresetMarks::PresetMarks(std::string markFile, size_t mostPaths)
    : file(std::move(markFile)), most(mostPaths)
{
    constexpr long long kMostBytes = 4 << 20;
    const long long bytes = KWFileio::size(file);
    if (bytes <= 0 || bytes > kMostBytes)
        return;
    std::string text(static_cast<size_t>(bytes), '\0');
    if (!KWFileio::read(file, text.data(), text.size()))
        return;
    std::istringstream lines(text);
    for (std::string line; paths.size() < most && std::getline(lines, line);)
        if (!line.empty() && !contains(line))
            paths.push_back(line);
}

bool PresetMarks::contains(const std::string& path) const
{
    return std::find(paths.begin(), paths.end(), path) != paths.end();
}

bool PresetMarks::remove(const std::string& path)
{
    const auto found = std::find(paths.begin(), paths.end(), path);
    if (found == paths.end())
        return false;
    paths.erase(found);
    return true;
}

void PresetMarks::toggle(const std::string& path)
{
    if (remove(path))
        save();
    else
        bringToFront(path);
}

void PresetMarks::bringToFront(const std::string& path)
{
    if (path.empty() || path.find('\n') != std::string::npos)
        return;
    remove(path);
    paths.insert(paths.begin(), path);
    if (paths.size() > most)
        paths.resize(most);
    save();
}

void PresetMarks::save() const
{
    std::string text;
    for (const std::string& path : paths)
        text += path + '\n';
    if (KWFileio::makeFolder(KWFileio::folderOf(file)))
        KWFileio::write(file, text.data(), text.size());
}

} // namespace ormund
