// Tells the user, on the error stream, how far a long step is and what went wrong.
#pragma once

#include <exception>
#include <string>

namespace digits {

void complain(const std::exception& error);

// On a terminal one line is written again and again; elsewhere there is a line at each quarter.
class Progress {
public:
    Progress(std::string label, int total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void step();

    // Clears the way for a message of its own line.
    void interrupt();

private:
    void show();

    std::string label_;
    int total_;
    int done_ = 0;
    int shown_ = -1;  // per cent
    bool terminal_;
};

}  // namespace digits
