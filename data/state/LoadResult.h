// How a load or a save ended, and what the user reads of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ormund {

enum class LoadResult : uint8_t {
    Done,
    NoFile,       // nothing was chosen, or it is not there
    Unreadable,   // not readable, or shorter than a header
    NoFormat,     // the magic word is another, or the words do not add up
    WrongVersion, // another kind of chunk
    WrongFile,    // the second magic word is another
    NewerVersion, // written by a later program
    NewerMap,     // the same of a map of controllers
    NotSaved,     // the preset could not be written
    MapNotSaved,  // the map could not be written
};

// The text for showMessage; empty where nothing is said. `path` is named where a file is.
std::string loadMessage(LoadResult result, std::string_view path = {});

} // namespace ormund
