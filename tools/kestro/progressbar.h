#ifndef KESTRO_TOOL_PROGRESSBAR_H
#define KESTRO_TOOL_PROGRESSBAR_H

#include <cstddef>
#include <string>

// One line on stderr, redrawn while a terminal shows it: the group being collected out of all
// groups, how many types have run, and the type running now. Types are counted from the
// library's progress records, so they show while the log level lets those through.
class ProgressBar {
public:
    explicit ProgressBar(std::size_t groupCount);
    ~ProgressBar();
    void StartGroup(std::size_t index, const std::string& display);

private:
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    void OnLogRecord(int level, const std::string& text);
    void Draw() const;

    bool shown;
    std::size_t groupCount;
    std::size_t groupIndex = 0;
    std::size_t typesRun = 0;
    std::string group;
    std::string type;
};

#endif
