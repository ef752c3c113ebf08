#include "platform/OpenLink.h"

#include "platform/ChildProcess.h"

namespace ormund {

bool openLink(const std::string& target)
{
    // A leading dash would be an option.
    if (target.empty() || target[0] == '-')
        return false;
    for (const char* program : {"xdg-open", "gio", "exo-open"}) {
        std::vector<std::string> command{program};
        if (command[0] == "gio")
            command.push_back("open");
        command.push_back(target);
        if (ChildProcess::startDetached(command))
            return true;
    }
    return false;
}

} // namespace ormund
