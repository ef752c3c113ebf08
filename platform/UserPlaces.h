// Where the user's files are, and where the installation is.
#pragma once

#include <string>

namespace ormund {

// $HOME, or what the user's entry says where that is no absolute path; "/" where neither is.
std::string homeFolder();

// Each is empty when it is unknown, for instance without a home.
struct UserPlaces {
    std::string store;         // file of the key store
    std::string content;       // root of the preset folders
    std::string installed;     // root of the shipped content
    std::string recovery = {}; // folder of the songs that a crash leaves
    std::string session = {};  // file of what the program had open

    // $XDG_CONFIG_HOME, $XDG_DATA_HOME and $XDG_STATE_HOME, else the usual folders of $HOME or of
    // the user's entry.
    static UserPlaces find();
};

} // namespace ormund
