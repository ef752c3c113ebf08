#include "platform/KWFileio.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace ormund {

namespace {

class Descriptor {
public:
    explicit Descriptor(int opened) : fd(opened) { }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    explicit operator bool() const { return fd >= 0; }
    int get() const { return fd; }
    bool close()
    {
        const int open = fd;
        fd = -1;
        return open >= 0 && ::close(open) == 0;
    }

private:
    int fd;
};

bool readAll(int fd, char* to, size_t bytes)
{
    while (bytes > 0) {
        const ssize_t got = ::read(fd, to, bytes);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        to += got;
        bytes -= static_cast<size_t>(got);
    }
    return true;
}

bool writeAll(int fd, const char* from, size_t bytes)
{
    while (bytes > 0) {
        const ssize_t put = ::write(fd, from, bytes);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        from += put;
        bytes -= static_cast<size_t>(put);
    }
    return true;
}

std::string linkTarget(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(
        ::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

// Beside the target, so that the rename stays on one file system. Hidden and with another ending,
// so that no listing of presets shows it.
std::string temporaryName(const std::string& target)
{
    static std::atomic<unsigned> counter{0};
    char suffix[64];
    std::snprintf(
        suffix, sizeof suffix, ".%ld.%u.part", static_cast<long>(::getpid()), counter.fetch_add(1));
    const size_t slash = target.rfind('/');
    const size_t name = slash == std::string::npos ? 0 : slash + 1;
    // A name of the greatest length would leave no room for the suffix.
    return target.substr(0, name) + "." + target.substr(name, 200) + suffix;
}

// Most file systems say of a name what it is, which saves asking for each of a hundred thousand.
bool isPlainOrFolder(const std::string& folder, const dirent& entry, bool& isFolder)
{
    isFolder = entry.d_type == DT_DIR;
    if (entry.d_type == DT_REG || isFolder)
        return true;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return false;
    struct stat info { };
    if (::stat(KWFileio::join(folder, entry.d_name).c_str(), &info) != 0)
        return false;
    isFolder = S_ISDIR(info.st_mode);
    return isFolder || S_ISREG(info.st_mode);
}

bool isNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// ".name.process.count.part", as temporaryName makes it.
bool isTemporary(std::string_view name)
{
    constexpr std::string_view kEnding = ".part";
    if (!name.starts_with('.') || !name.ends_with(kEnding))
        return false;
    name.remove_suffix(kEnding.size());
    for (int part = 0; part < 2; ++part) {
        const size_t dot = name.rfind('.');
        if (dot == 0 || dot == std::string_view::npos || !isNumber(name.substr(dot + 1)))
            return false;
        name = name.substr(0, dot);
    }
    return true;
}

// What a save left that was killed. A younger one may be a save under way.
void removeLeftovers(const std::string& folder)
{
    constexpr time_t kDay = 24 * 60 * 60;
    constexpr int kMostNames = 100000;
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), &::closedir);
    if (!open)
        return;
    const time_t now = ::time(nullptr);
    for (int i = 0; i < kMostNames; ++i) {
        const dirent* entry = ::readdir(open.get());
        if (!entry)
            return;
        struct stat info { };
        if (isTemporary(entry->d_name)
            && ::fstatat(::dirfd(open.get()), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0
            && S_ISREG(info.st_mode) && info.st_mtime < now - kDay)
            ::unlinkat(::dirfd(open.get()), entry->d_name, 0);
    }
}

void flushFolder(const std::string& folder)
{
    const Descriptor fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd)
        ::fsync(fd.get());
}

} // namespace

bool KWFileio::read(const std::string& path, void* buffer, size_t bytes)
{
    // Without waiting, so that a pipe that poses as a preset does not hold the thread.
    const Descriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info { };
    return fd && ::fstat(fd.get(), &info) == 0 && S_ISREG(info.st_mode)
        && readAll(fd.get(), static_cast<char*>(buffer), bytes);
}

long long KWFileio::size(const std::string& path)
{
    struct stat info { };
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return -1;
    return static_cast<long long>(info.st_size);
}

bool KWFileio::mayWrite(const std::string& path)
{
    struct stat link { };
    struct stat info { };
    if (::lstat(path.c_str(), &link) != 0)
        return true;
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool KWFileio::write(const std::string& path, const void* buffer, size_t bytes)
{
    const std::string target = linkTarget(path);
    if (!mayWrite(target))
        return false;
    removeLeftovers(folderOf(target));
    const std::string temporary = temporaryName(target);
    Descriptor fd(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!fd)
        return false;
    struct stat old { };
    if (::stat(target.c_str(), &old) == 0)
        ::fchmod(fd.get(), old.st_mode & 0777);
    const bool written =
        writeAll(fd.get(), static_cast<const char*>(buffer), bytes) && ::fsync(fd.get()) == 0;
    if (!fd.close() || !written || std::rename(temporary.c_str(), target.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    flushFolder(folderOf(target));
    return true;
}

std::vector<KWFileio::Entry> KWFileio::list(const std::string& folder, size_t& most)
{
    std::vector<Entry> entries;
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), &::closedir);
    if (!open)
        return entries;
    for (; most > 0; --most) {
        const dirent* entry = ::readdir(open.get());
        if (!entry)
            break;
        const std::string_view name = entry->d_name;
        bool isFolder = false;
        if (name != "." && name != ".." && isPlainOrFolder(folder, *entry, isFolder))
            entries.push_back({std::string(name), isFolder});
    }
    std::sort(entries.begin(), entries.end(),
        [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return entries;
}

bool KWFileio::remove(const std::string& path) { return ::unlink(path.c_str()) == 0; }

bool KWFileio::exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

bool KWFileio::isFolder(const std::string& path)
{
    struct stat info { };
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool KWFileio::makeFolder(const std::string& path)
{
    if (path.empty() || isFolder(path))
        return !path.empty();
    const std::string above = folderOf(path);
    if (!above.empty() && above != path && !makeFolder(above))
        return false;
    return ::mkdir(path.c_str(), 0777) == 0 || isFolder(path);
}

std::string KWFileio::join(const std::string& folder, const std::string& name)
{
    if (folder.empty())
        return name;
    return folder.back() == '/' ? folder + name : folder + '/' + name;
}

std::string KWFileio::folderOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string KWFileio::nameOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

} // namespace ormund
