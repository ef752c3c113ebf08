// Asks the user for a file or a folder, in a window of the desktop's own dialog program, without
// holding up the host: open() returns at once, poll() is called at idle, and the answer comes by a
// call from there. Screen thread alone.
#pragma once

#include "platform/ChildProcess.h"

#include <functional>
#include <string>

namespace ormund {

class KWFileChooser {
public:
    enum class Kind : unsigned char { Load, Save, Folder };

    struct Request {
        Kind kind = Kind::Load;
        std::string title;
        std::string extension;     // "kwe"; empty for every file
        std::string extensionName; // "Ormund preset", for the filter; may be empty
        std::string startFolder;   // a missing folder gives the user's home
        std::string fileName;      // suggested for Save
    };
    // The chosen path; empty when the user took none. A saved path ends in the extension, and an
    // existing file has been asked about. A folder ends in no slash.
    using Answer = std::function<void(const std::string& path)>;

    // False when there is no program for it; the answer does not come. A dialog that is still open,
    // perhaps behind the host's window, gives way to the new one, and its answer does not come.
    bool open(const Request& request, Answer answer);
    bool isOpen() const { return dialog.isRunning(); }
    void poll();
    // Closes the dialog. The answer does not come.
    void cancel();

    // Whether the desktop has a dialog program.
    static bool isAvailable();

private:
    bool startChoice();
    bool startQuestion(const std::string& path);
    void finish(const std::string& path);

    ChildProcess dialog;
    Request asked;
    Answer continuation;
    std::string doubtful; // the path that the overwrite question is about
    bool isKdialog = false;
};

} // namespace ormund
