#include "data/library/Recovery.h"

#include "platform/KWFileio.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace ormund {

namespace {

constexpr char kLiving[] = ".song"; // of a process that runs, or of one that died
constexpr char kLock[] = ".lock";
constexpr char kPreset[] = ".kwe";
constexpr size_t kMostNames = 10'000;
constexpr size_t kMostName = 80; // bytes
constexpr size_t kDateLength = 16;
constexpr int kMostTries = 100;

std::string fileName(const std::string& name)
{
    std::string plain;
    for (const char letter : name)
        if (static_cast<unsigned char>(letter) >= ' ' && letter != 0x7F)
            plain += letter == '/' ? '-' : letter;
    if (plain.size() > kMostName) {
        plain.resize(kMostName);
        // No half letter at the end.
        while (!plain.empty() && (static_cast<unsigned char>(plain.back()) & 0xC0) == 0x80)
            plain.pop_back();
        if (!plain.empty() && (static_cast<unsigned char>(plain.back()) & 0xC0) == 0xC0)
            plain.pop_back();
    }
    return plain.empty() || plain == "EMPTY" ? "New song" : plain;
}

// A lock that nobody has, or -1. A file that its owner removed meanwhile is none.
int takeLock(const std::string& path, int flags)
{
    const int handle = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, 0600);
    if (handle < 0)
        return -1;
    struct stat about { };
    if (::flock(handle, LOCK_EX | LOCK_NB) == 0 && ::fstat(handle, &about) == 0
        && about.st_nlink > 0)
        return handle;
    ::close(handle);
    return -1;
}

struct Left {
    std::string path;
    timespec time{};
    long long bytes = 0;
};

Left leftAt(const std::string& path)
{
    struct stat about { };
    if (::lstat(path.c_str(), &about) != 0 || !S_ISREG(about.st_mode))
        return {};
    return {path, about.st_mtim, about.st_size};
}

bool isNewer(const Left& a, const Left& b)
{
    if (a.time.tv_sec != b.time.tv_sec)
        return a.time.tv_sec > b.time.tv_sec;
    if (a.time.tv_nsec != b.time.tv_nsec)
        return a.time.tv_nsec > b.time.tv_nsec;
    return a.path > b.path;
}

std::string dated(const std::string& folder, const Left& left, const std::string& name)
{
    std::tm local{};
    ::localtime_r(&left.time.tv_sec, &local);
    std::array<char, kDateLength + 1> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%d %H.%M", &local);
    const std::string plain = KWFileio::join(folder, date.data() + (" " + name));
    std::string path = plain + kPreset;
    for (int number = 2; KWFileio::exists(path) && number < kMostTries; ++number)
        path = plain + " (" + std::to_string(number) + ")" + kPreset;
    return path;
}

void removeOldest(std::vector<Left> all)
{
    std::sort(all.begin(), all.end(), isNewer);
    long long sum = 0;
    for (size_t i = 0; i < all.size(); ++i) {
        sum += all[i].bytes;
        if (i >= kMostRecovered || (i > 0 && sum > kMostRecoveredBytes))
            ::unlink(all[i].path.c_str());
    }
}

} // namespace

RecoveryFile::RecoveryFile(std::string ownFolder) : folder(std::move(ownFolder))
{
    if (!folder.empty() && KWFileio::makeFolder(folder))
        lockOne();
}

RecoveryFile::~RecoveryFile()
{
    if (lock < 0)
        return;
    if (!stays)
        remove();
    if (file.empty())
        ::unlink(KWFileio::join(folder, key + kLock).c_str());
    ::close(lock);
}

void RecoveryFile::lockOne()
{
    static std::atomic<unsigned> count = 0;
    for (int i = 0; i < kMostTries && lock < 0; ++i) {
        key = std::to_string(::getpid()) + "-" + std::to_string(++count);
        lock = takeLock(KWFileio::join(folder, key + kLock), O_CREAT | O_EXCL);
    }
}

bool RecoveryFile::write(std::span<const uint32_t> words, const std::string& name)
{
    if (lock < 0)
        return false;
    const std::string path = KWFileio::join(folder, key + " " + fileName(name) + kLiving);
    if (!KWFileio::write(path, words.data(), words.size_bytes()))
        return false;
    if (path != file)
        remove();
    file = path;
    return true;
}

void RecoveryFile::remove()
{
    if (!file.empty())
        ::unlink(file.c_str());
    file.clear();
}

std::vector<std::string> settleRecovered(const std::string& folder)
{
    std::vector<Left> settled;
    std::vector<Left> all;
    std::vector<std::string> locks;
    size_t most = kMostNames;
    for (const KWFileio::Entry& entry : KWFileio::list(folder, most)) {
        const std::string path = KWFileio::join(folder, entry.name);
        if (entry.isFolder)
            continue;
        if (entry.name.ends_with(kLock))
            locks.push_back(path);
        else if (const Left left = leftAt(path);
                 entry.name.ends_with(kPreset) && !left.path.empty())
            all.push_back(left);
    }
    for (const std::string& path : locks) {
        const int lock = takeLock(path, 0);
        if (lock < 0)
            continue; // its process lives
        const std::string key = KWFileio::nameOf(path) + " ";
        most = kMostNames;
        for (const KWFileio::Entry& entry : KWFileio::list(folder, most)) {
            if (entry.isFolder || !entry.name.starts_with(key) || !entry.name.ends_with(kLiving))
                continue;
            Left left = leftAt(KWFileio::join(folder, entry.name));
            const std::string name = entry.name.substr(
                key.size(), entry.name.size() - key.size() - (sizeof kLiving - 1));
            const std::string target = dated(folder, left, name);
            if (left.path.empty() || ::rename(left.path.c_str(), target.c_str()) != 0)
                continue;
            left.path = target;
            settled.push_back(left);
        }
        ::unlink(path.c_str());
        ::close(lock);
    }
    all.insert(all.end(), settled.begin(), settled.end());
    removeOldest(std::move(all));
    std::sort(settled.begin(), settled.end(), isNewer);
    std::vector<std::string> paths;
    for (const Left& left : settled)
        if (KWFileio::exists(left.path))
            paths.push_back(left.path);
    return paths;
}

std::string recoveredName(const std::string& path)
{
    const std::string name = KWFileio::nameOf(path);
    return name.size() > kDateLength + 1 ? name.substr(kDateLength + 1) : name;
}

std::string recoveredDate(const std::string& path)
{
    const Left left = leftAt(path);
    std::tm local{};
    ::localtime_r(&left.time.tv_sec, &local);
    std::array<char, 32> date{};
    std::strftime(date.data(), date.size(), "%d %b %H:%M", &local);
    return date.data();
}

} // namespace ormund
