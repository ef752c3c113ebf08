// Lets an LV2 module write its own description into the current folder.
#include <cstdio>
#include <dlfcn.h>
#include <filesystem>
#include <string>

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fprintf(stderr, "usage: %s MODULE\n", arguments[0]);
        return 2;
    }
    void* module = dlopen(arguments[1], RTLD_NOW);
    void* writer = module ? dlsym(module, "lv2_generate_ttl") : nullptr;
    if (!writer) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    const std::string name = std::filesystem::path(arguments[1]).stem();
    reinterpret_cast<void (*)(const char*)>(writer)(name.c_str());
    return 0;
}
