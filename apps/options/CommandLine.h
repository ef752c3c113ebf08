// The command line of a program: what it takes, its help and its mistakes. The library behind it is
// all headers and slow to compile, so it is met in this one place.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ormund {

// What is declared must outlive parse(), which fills it. The last of an option that is given
// several times counts. Names are "--name", or "NAME" for what stands alone; `kind` names the value
// in the help.
class CommandLine {
public:
    struct Range {
        double least;
        double most;
    };

    CommandLine(
        const std::string& purpose, const std::string& program, const std::string& footer = {});
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    void flag(const char* name, bool& value, const char* help);
    void text(const char* name, std::string& value, const char* help, const char* kind = "TEXT");
    // Each time it is given adds one.
    void texts(
        const char* name, std::vector<std::string>& values, const char* help, const char* kind);
    // A number outside of `range` is a mistake, and so is a part of one where a whole one is asked.
    void number(const char* name, int& value, const char* help, const char* kind, Range range);
    void number(const char* name, double& value, const char* help, const char* kind, Range range);
    void number(const char* name, std::optional<double>& value, const char* help, const char* kind,
        Range range);
    void version(const std::string& answer);
    // Of options that were declared before.
    void excludes(const char* name, const char* other);
    void needs(const char* name, const char* other);

    // Answers the exit code when the program is to end at once (help or a mistake, both printed),
    // nothing when it is to go on.
    std::optional<int> parse(int count, char** arguments);
    // Prints a mistake in one line and answers its exit code.
    int refuse(const std::string& why) const;

private:
    struct Parser;
    std::unique_ptr<Parser> parser;
};

} // namespace ormund
