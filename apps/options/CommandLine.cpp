#include "apps/options/CommandLine.h"

#include "base/TerminalText.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iomanip>
#include <sstream>

namespace ormund {

namespace {
constexpr int kUsageError = 2;

// Says what is wrong, or nothing.
CLI::Validator within(CommandLine::Range range)
{
    std::ostringstream limits;
    limits << std::setprecision(10) << range.least << " to " << range.most;
    return CLI::Validator(
        [range, limits = limits.str()](const std::string& text) {
            double value = 0;
            const bool isNumber = CLI::detail::lexical_cast(text, value);
            const bool fits = isNumber && value >= range.least && value <= range.most;
            return fits ? std::string() : text + " is no number from " + limits;
        },
        limits.str());
}

template <typename Number>
void addNumber(CLI::App& app, const char* name, Number& value, const char* help, const char* kind,
    CommandLine::Range range)
{
    app.add_option(name, value, help)->type_name(kind)->check(within(range));
}
} // namespace

struct CommandLine::Parser {
    CLI::App app;
};

CommandLine::CommandLine(
    const std::string& purpose, const std::string& program, const std::string& footer)
    : parser(new Parser{CLI::App(purpose, program)})
{
    parser->app.footer(footer);
    parser->app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CommandLine::~CommandLine() = default;

void CommandLine::flag(const char* name, bool& value, const char* help)
{
    parser->app.add_flag(name, value, help);
}

void CommandLine::text(const char* name, std::string& value, const char* help, const char* kind)
{
    parser->app.add_option(name, value, help)->type_name(kind);
}

void CommandLine::texts(
    const char* name, std::vector<std::string>& values, const char* help, const char* kind)
{
    parser->app.add_option(name, values, help)
        ->type_name(kind)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
}

void CommandLine::number(
    const char* name, int& value, const char* help, const char* kind, Range range)
{
    addNumber(parser->app, name, value, help, kind, range);
}

void CommandLine::number(
    const char* name, double& value, const char* help, const char* kind, Range range)
{
    addNumber(parser->app, name, value, help, kind, range);
}

void CommandLine::number(
    const char* name, std::optional<double>& value, const char* help, const char* kind, Range range)
{
    addNumber(parser->app, name, value, help, kind, range);
}

void CommandLine::version(const std::string& answer)
{
    parser->app.set_version_flag("--version", answer, "Print the version and end");
}

void CommandLine::excludes(const char* name, const char* other)
{
    parser->app.get_option(name)->excludes(parser->app.get_option(other));
}

void CommandLine::needs(const char* name, const char* other)
{
    parser->app.get_option(name)->needs(parser->app.get_option(other));
}

std::optional<int> CommandLine::parse(int count, char** arguments)
{
    try {
        parser->app.parse(count, arguments);
    } catch (const CLI::Success& asked) { // help or the version
        return parser->app.exit(asked);
    } catch (const CLI::ParseError& mistake) {
        return refuse(mistake.what());
    }
    return {};
}

int CommandLine::refuse(const std::string& why) const
{
    std::fprintf(stderr, "%s: %s (--help says more)\n", parser->app.get_name().c_str(),
        terminalText(why).c_str());
    return kUsageError;
}

} // namespace ormund
