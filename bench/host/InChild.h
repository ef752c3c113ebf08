// A measurement in a process of its own.
#pragma once

#include <optional>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>

namespace ormund {

// `measure` gives an optional of a plain record; it comes back through a pipe. The child leaves
// without tidying up, for a module may not like to be unloaded.
template <typename Measure>
auto inChild(const Measure& measure) -> decltype(measure())
{
    using Record = typename decltype(measure())::value_type;
    static_assert(std::is_trivially_copyable_v<Record>);
    int ends[2];
    if (pipe(ends) != 0)
        return std::nullopt;
    const pid_t child = fork();
    if (child == 0) {
        const std::optional<Record> measured = measure();
        if (measured && write(ends[1], &*measured, sizeof *measured) != sizeof *measured)
            _exit(1);
        _exit(0);
    }
    close(ends[1]);
    Record record{};
    const bool done = child > 0 && read(ends[0], &record, sizeof record) == sizeof record;
    close(ends[0]);
    if (child > 0)
        waitpid(child, nullptr, 0);
    return done ? std::optional<Record>(record) : std::nullopt;
}

} // namespace ormund
