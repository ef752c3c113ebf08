// Writes the parts of the reference pages that come from the program's own tables, between the
// marks "<!-- table: NAME -->" and "<!-- end -->". With --check it only compares.
#include "apps/ormund-tables/FormatTables.h"
#include "apps/ormund-tables/ReferenceTables.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

using namespace ormund;

namespace {

struct Table {
    const char* page;
    const char* name;
    std::function<std::string(const std::string& root)> make;
};

const Table kTables[] = {
    {"docs/parameters.md", "parameters", [](const std::string&) { return parameterTable(); }},
    {"docs/controls.md", "controls", [](const std::string&) { return controlTable(); }},
    {"docs/controls.md", "passive controls",
        [](const std::string&) { return passiveControlTable(); }},
    {"docs/controls.md", "passive parameters",
        [](const std::string&) { return passiveParameterTable(); }},
    {"docs/formats.md", "file keys", [](const std::string&) { return fileKeyTable(); }},
    {"docs/formats.md", "settings", [](const std::string&) { return settingTable(); }},
    {"docs/formats.md", "a kws",
        [](const std::string& root) { return synthWalk(root + "/presets", "Bass/Round sub"); }},
    {"docs/formats.md", "a kwe",
        [](const std::string& root) {
            return globalWalk(root + "/presets", "Bass Lines/Night bus");
        }},
};

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error(path + " cannot be read");
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void replaceTable(std::string& page, const Table& table, const std::string& root)
{
    const std::string mark = std::string("<!-- table: ") + table.name + " -->\n";
    const size_t start = page.find(mark);
    const size_t end = page.find("<!-- end -->", start);
    if (start == std::string::npos || end == std::string::npos)
        throw std::runtime_error(std::string(table.page) + " has no table " + table.name);
    std::string made = table.make(root);
    made.insert(made.begin(), '\n');
    made.push_back('\n');
    page.replace(start + mark.size(), end - start - mark.size(), made);
}

} // namespace

int main(int count, char** words)
{
    const bool check = count == 3 && std::strcmp(words[1], "--check") == 0;
    if (count != 2 && !check) {
        std::fprintf(stderr, "usage: ormund-tables [--check] REPOSITORY\n");
        return 2;
    }
    try {
        const std::string root = words[count - 1];
        bool stale = false;
        for (const Table& table : kTables) {
            const std::string path = root + "/" + table.page;
            const std::string before = contentOf(path);
            std::string page = before;
            replaceTable(page, table, root);
            if (page == before)
                continue;
            stale = true;
            if (check)
                std::fprintf(stderr, "%s: the table \"%s\" is stale; run ormund-tables\n",
                    table.page, table.name);
            else
                std::ofstream(path, std::ios::binary) << page;
        }
        return check && stale ? 1 : 0;
    } catch (const std::exception& mishap) {
        std::fprintf(stderr, "ormund-tables: %s\n", mishap.what());
        return 1;
    }
}
