#ifndef KESTRO_TESTS_LOGCAPTURE_H
#define KESTRO_TESTS_LOGCAPTURE_H

#include <string>
#include <utility>
#include <vector>

// Collects every log record while it lives, at all levels, and restores the old level after.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();

    const std::vector<std::pair<int, std::string> >& Records() const { return records; }
    // True when some record of `level` has exactly `text`.
    bool Has(int level, const std::string& text) const;
    // How many records contain `fragment`.
    int Count(const std::string& fragment) const;
    std::string Dump() const;
    void Clear() { records.clear(); }

private:
    std::vector<std::pair<int, std::string> > records;
    int oldLevel;
};

#endif
