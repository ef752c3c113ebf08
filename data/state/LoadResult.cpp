#include "data/state/LoadResult.h"

#include "base/Product.h"

#include <array>
#include <cstdio>

namespace ormund {

namespace {

enum class Named : uint8_t { Nothing, Product, Path };
struct ResultRow {
    LoadResult result;
    const char* text;
    Named named;
};

constexpr std::array<ResultRow, 10> kTexts{{
    {LoadResult::Done, "", Named::Nothing},
    {LoadResult::NoFile, "", Named::Nothing},
    {LoadResult::Unreadable, "%s cannot be read", Named::Path},
    {LoadResult::NoFormat, "\t This is no valid %s format!", Named::Product},
    {LoadResult::WrongVersion, "wrong plugin version", Named::Nothing},
    {LoadResult::WrongFile, "This is not a %s file", Named::Product},
    {LoadResult::NewerVersion, "preset was written with a newer version of %s", Named::Product},
    {LoadResult::NewerMap, "midi map was written with a newer version of %s", Named::Product},
    {LoadResult::NotSaved, "saving preset to %s failed", Named::Path},
    {LoadResult::MapNotSaved, "saving cc map to %s failed", Named::Path},
}};

} // namespace

std::string loadMessage(LoadResult result, std::string_view path)
{
    const ResultRow& row = kTexts[static_cast<size_t>(result)];
    std::string text = row.text;
    const size_t place = text.find("%s");
    if (place != std::string::npos)
        text.replace(place, 2, row.named == Named::Path ? path : std::string_view(product::kName));
    return text;
}

} // namespace ormund
