#include "platform/KWFileChooser.h"

#include "platform/UserPlaces.h"

#include <cstdlib>
#include <sys/stat.h>
#include <utility>

namespace ormund {

namespace {

bool isFolder(const std::string& path)
{
    struct stat found { };
    return stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

bool exists(const std::string& path)
{
    struct stat found { };
    return lstat(path.c_str(), &found) == 0;
}

bool isKdeDesktop()
{
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return desktop && std::string(desktop).find("KDE") != std::string::npos;
}

std::string startPath(const KWFileChooser::Request& request)
{
    std::string folder = isFolder(request.startFolder) ? request.startFolder : homeFolder();
    if (folder.back() != '/')
        folder += '/';
    return request.kind == KWFileChooser::Kind::Save ? folder + request.fileName : folder;
}

bool endsInExtension(const std::string& path, const std::string& extension)
{
    std::string tail = extension;
    tail.insert(tail.begin(), '.');
    return path.size() >= tail.size()
        && path.compare(path.size() - tail.size(), tail.size(), tail) == 0;
}

} // namespace

bool KWFileChooser::isAvailable()
{
    return ChildProcess::isInstalled("zenity") || ChildProcess::isInstalled("kdialog");
}

bool KWFileChooser::open(const Request& request, Answer answer)
{
    cancel();
    const bool hasKdialog = ChildProcess::isInstalled("kdialog");
    isKdialog = hasKdialog && (isKdeDesktop() || !ChildProcess::isInstalled("zenity"));
    asked = request;
    doubtful.clear();
    if (!startChoice())
        return false;
    continuation = std::move(answer);
    return true;
}

bool KWFileChooser::startChoice()
{
    const std::string pattern = asked.extension.empty() ? "*" : "*." + asked.extension;
    const std::string name = asked.extensionName.empty() ? pattern : asked.extensionName;
    if (isKdialog) {
        std::vector<std::string> command{"kdialog", "--title", asked.title};
        const char* const options[] = {
            "--getopenfilename", "--getsavefilename", "--getexistingdirectory"};
        command.emplace_back(options[static_cast<int>(asked.kind)]);
        command.push_back(startPath(asked));
        if (asked.kind != Kind::Folder)
            command.push_back(name + " (" + pattern + ")");
        return dialog.start(command);
    }
    std::vector<std::string> command{
        "zenity", "--file-selection", "--title=" + asked.title, "--filename=" + startPath(asked)};
    if (asked.kind == Kind::Folder)
        command.emplace_back("--directory");
    if (asked.kind == Kind::Save) {
        command.emplace_back("--save");
        command.emplace_back("--confirm-overwrite");
    }
    if (asked.kind != Kind::Folder && !asked.extension.empty()) {
        command.push_back("--file-filter=" + name + " | " + pattern);
        command.emplace_back("--file-filter=* | *");
    }
    return dialog.start(command);
}

// The dialog asked about the name that the user typed; with the extension added it is another.
bool KWFileChooser::startQuestion(const std::string& path)
{
    const std::string text = "\"" + path + "\" exists. Replace it?";
    if (isKdialog)
        return dialog.start({"kdialog", "--title", asked.title, "--warningyesno", text});
    return dialog.start(
        {"zenity", "--question", "--no-markup", "--title=" + asked.title, "--text=" + text});
}

void KWFileChooser::poll()
{
    if (!isOpen() || !dialog.poll())
        return;
    // A host that collects all children takes the status too; the output then decides alone.
    const bool isTaken = dialog.exitStatus() == 0
        || (dialog.exitStatus() < 0 && doubtful.empty() && !dialog.output().empty());
    if (!doubtful.empty()) {
        finish(isTaken ? std::exchange(doubtful, "") : "");
        return;
    }
    std::string path = isTaken ? dialog.output() : "";
    while (!path.empty() && (path.back() == '\n' || path.back() == '\r'))
        path.pop_back();
    if (asked.kind == Kind::Folder)
        while (path.size() > 1 && path.back() == '/')
            path.pop_back();
    if (asked.kind == Kind::Save && !path.empty() && !asked.extension.empty()
        && !endsInExtension(path, asked.extension)) {
        path += "." + asked.extension;
        if (exists(path) && startQuestion(path)) {
            doubtful = path;
            return;
        }
    }
    finish(path);
}

void KWFileChooser::finish(const std::string& path)
{
    doubtful.clear();
    // The answer may open the next dialog.
    const Answer answer = std::exchange(continuation, nullptr);
    if (answer)
        answer(path);
}

void KWFileChooser::cancel()
{
    dialog.end();
    continuation = nullptr;
    doubtful.clear();
}

} // namespace ormund
